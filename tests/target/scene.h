/* What the programs here have in common: the full document and a directory of their own. */
#ifndef KIO_TESTS_TARGET_SCENE_H
#define KIO_TESTS_TARGET_SCENE_H

/* A directory made at the first call; its files are removed with it by RemoveScene. */
const char *SceneDirectory(void);

/* The path of a file in it, in a buffer that the next call overwrites. */
const char *ScenePath(const char *name);

/* The contents of that file, in a buffer that the next call overwrites; empty when it cannot be
 * read. */
const char *SceneText(const char *name);

void RemoveScene(void);

/* The document, as it is in the file, in a buffer that the library may change. */
char *FullDocument(void);

#endif

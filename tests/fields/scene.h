// The kinds of documents that hold a field, each with a device that has all that it asks for.
#ifndef KIO_TESTS_FIELDS_SCENE_H
#define KIO_TESTS_FIELDS_SCENE_H

#include <string>
#include <vector>

#include "support/sample_document.h"

namespace kio::test {

enum class Scene {
  kDhcp,
  kStatic,
  kPppoe,
  kAdsl,
  kApn,
  kSite,  // a wireless uplink
  // Format version 1.0.
  kDhcp10,
  kStatic10,
  kPppoe10,
  kDsl10,
  kSite10,
  kExtender10,  // an Ethernet device that extends another network
};

inline constexpr Scene kScenes[] = {Scene::kDhcp,   Scene::kStatic,   Scene::kPppoe,
                                    Scene::kAdsl,   Scene::kApn,      Scene::kSite,
                                    Scene::kDhcp10, Scene::kStatic10, Scene::kPppoe10,
                                    Scene::kDsl10,  Scene::kSite10,   Scene::kExtender10};

// The name without its k.
std::string NameOf(Scene scene);

// Empties host and record, stores the device and returns its document.
Document Prepare(Scene scene);

// What the last exchange changed in the store, without what is written even when nothing differs,
// and without the mark that something did.
std::vector<std::string> RealChanges();

}  // namespace kio::test

#endif

// Holds nothing: the headers that most tests include are compiled for it, and used by all.

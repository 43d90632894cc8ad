// Changes of inputs that keep their form: elements of documents and lists, lines and words.
#ifndef KIO_FUZZ_MUTATOR_H
#define KIO_FUZZ_MUTATOR_H

#include <cstddef>
#include <random>
#include <string>

namespace kio::fuzz {

using Random = std::minstd_rand;

// A number below the limit; 0 for a limit of 0.
std::size_t Draw(Random& random, std::size_t limit);

// Makes one such change. What is put in comes from a list of texts that the library and the host
// know or count, from the input, and from another input.
void MutateStructure(std::string& input, const std::string& other, Random& random);

}  // namespace kio::fuzz

#endif

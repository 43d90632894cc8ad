// Which form of an answer a client prefers, by the header Accept.
#ifndef HOST_ACCEPT_H
#define HOST_ACCEPT_H

#include <optional>
#include <string_view>

namespace kiohost {

inline constexpr std::string_view kProblemType = "application/problem+json";
inline constexpr std::string_view kJsonType = "application/json";

// Whether a client prefers the first type of content to the second, which it gets otherwise. It
// does when the first has the higher quality. With the same quality it does when it names the first
// more closely.
bool Prefers(std::string_view accept, std::string_view type, std::string_view otherwise);

// Whether a client prefers a refusal as problem details to one of another type. JSON of any kind
// stands for them. A client that names problem details and something else as well prefers them.
bool PrefersProblem(std::string_view accept, std::string_view otherwise);

}  // namespace kiohost

#endif  // HOST_ACCEPT_H

// Whether a router's answer is the one that was recorded, apart from what is another one in each
// run.
#ifndef CTL_SAME_ANSWER_H
#define CTL_SAME_ANSWER_H

#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "http.h"

namespace kioctl {

struct Difference {
  std::string where;  // "the status", "the header etag", "the body at /lastApply"
  std::string recorded;
  std::string now;
};

class AnswerComparison {
 public:
  // The first difference; nothing when they are the same. An id must stand wherever the recorded
  // one has stood that it was first found for.
  std::optional<Difference> Compare(const Reply& recorded, const Reply& now);

  // A text with the ids that this router gives.
  std::string WithOwnIds(const std::string& text) const;

 private:
  using Ids = std::map<std::string, std::string>;

  std::optional<Difference> CompareHeaders(const Reply& recorded, const Reply& now);
  std::optional<Difference> CompareBodies(const Reply& recorded, const Reply& now);
  std::optional<Difference> CompareJson(const std::string& path, const nlohmann::json& recorded,
                                        const nlohmann::json& now);
  std::optional<Difference> CompareMembers(const std::string& path, const nlohmann::json& recorded,
                                           const nlohmann::json& now);
  std::optional<Difference> CompareItems(const std::string& path, const nlohmann::json& recorded,
                                         const nlohmann::json& now);
  bool AreSame(const std::string& recorded, const std::string& now);

  Ids ids_;  // of this router, by the recorded ones
};

}  // namespace kioctl

#endif  // CTL_SAME_ANSWER_H

// Who tells whether a device takes a document: the library itself.
#ifndef CTL_JUDGE_H
#define CTL_JUDGE_H

#include <map>
#include <optional>
#include <string>

#include "elements.h"
#include "router.h"
#include "scratch_store.h"

namespace kioctl {

struct Verdict {
  int code = 0;
  std::string message;

  bool operator==(const Verdict& other) const = default;
};

class Judge {
 public:
  virtual ~Judge() = default;

  // Has a device take the document, and forget it again.
  virtual Verdict Try(const std::string& document) = 0;

  // The text of a node of that device, as far as it is known.
  virtual std::optional<std::string> Node(const std::string& path) const = 0;

  // What a value of an element must be, in words.
  std::string RuleOf(const Element& element) const;
};

// The library in this process, over a store in memory.
class LocalJudge : public Judge {
 public:
  // The factory settings of a profile, by name or file; those of the default one for an empty name.
  explicit LocalJudge(const std::string& profile);

  Verdict Try(const std::string& document) override;
  std::optional<std::string> Node(const std::string& path) const override;

 private:
  Nodes factory_;
};

// The library in a router, by dry runs.
class RouterJudge : public Judge {
 public:
  explicit RouterJudge(Router* router);

  Verdict Try(const std::string& document) override;
  std::optional<std::string> Node(const std::string& path) const override;

 private:
  Router* router_;
  Nodes values_;
};

}  // namespace kioctl

#endif  // CTL_JUDGE_H

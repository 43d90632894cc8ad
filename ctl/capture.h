// A profile for the virtual router, made of what a router tells an app.
#ifndef CTL_CAPTURE_H
#define CTL_CAPTURE_H

#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "elements.h"

namespace kioctl {

class Capture {
 public:
  // The answers to GET /backup, GET /vars and GET /vars?values=1.
  Capture(const nlohmann::json& archive, const nlohmann::json& catalogue,
          const nlohmann::json& values);

  // A settings document of what the router has, with stand-ins for the secrets. An element is left
  // out with all that is in it.
  std::string Document(const std::string& without = "") const;
  // One that says as little as a document can.
  std::string EmptyDocument() const;

  // Whether the router told settings of a block.
  bool Has(const std::string& block) const;

  // Adds a node that the router does not tell, with a remark on where its text comes from.
  void Add(const std::string& node, const std::string& text, const std::string& remark = "");

  // The profile. `title` is its first line.
  std::string Text(const std::string& title) const;

  // The model, for a title.
  std::string Model() const;

 private:
  struct Entry {
    std::string text;
    std::string remark;
  };

  void AddSettings(const nlohmann::json& archive);
  void AddVariables(const nlohmann::json& catalogue, const nlohmann::json& values);
  void AddCircuit();
  void AddStandIns();
  void AddStandIn(const std::string& node);
  void AppendElements(const std::string& parent, const std::string& rule,
                      const std::string& without, std::string* xml) const;
  std::string ValueOf(const Element& element, const std::string& rule) const;
  bool HasRule(const std::string& path, int number) const;
  std::string TextOf(const std::string& node) const;
  // What the virtual router would say against a text.
  std::string FaultOf(const std::string& node, const std::string& text) const;
  std::string Version() const;

  std::map<std::string, Entry> nodes_;
};

}  // namespace kioctl

#endif  // CTL_CAPTURE_H

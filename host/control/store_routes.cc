#include "control/store_routes.h"

#include <optional>
#include <string>

#include "control/control_table.h"
#include "control/json_body.h"
#include "fault_points.h"
#include "json_reply.h"
#include "node_path.h"

namespace kiohost {
namespace {

Json AsJson(const Node& node) { return {{"path", node.path}, {"text", node.text}}; }

Reply NoNodePath(const std::string& path) {
  return BadRequestReply("\"" + path + "\" is no path such as /sys/friendlyname");
}

std::string PathOf(const RequestView& request) { return "/" + request.name(); }

Reply ListNodes(Store* store, const RequestView& request) {
  const std::string under(request.Argument("under").value_or(""));
  if (!under.empty() && !IsNodePath(under)) {
    return NoNodePath(under);
  }
  Json nodes = Json::array();
  for (const Node& node : store->List(under)) {
    nodes.push_back(AsJson(node));
  }
  return JsonReply({{"nodes", std::move(nodes)}});
}

Reply GetNode(Store* store, const RequestView& request) {
  const std::string path = PathOf(request);
  if (!IsNodePath(path) && !IsCountPath(path)) {
    return NoNodePath(path);
  }
  const std::optional<std::string> text = store->Get(path);
  return text ? JsonReply(AsJson({path, *text}))
              : ErrorReply(MHD_HTTP_NOT_FOUND, "there is no node " + path);
}

Reply ChangeStore(Store* store, const std::function<void()>& change,
                  const std::function<void()>& changed, const Json& answer) {
  const WithoutFaults bench;
  const bool written = store->WriteWithoutWait(change);
  if (!written) {
    return ErrorReply(MHD_HTTP_INTERNAL_SERVER_ERROR, "the store could not be written");
  }
  changed();
  return JsonReply(answer);
}

Reply PutNode(Store* store, const std::function<void()>& changed, const RequestView& request) {
  const std::string path = PathOf(request);
  Reply refusal;
  const std::optional<Json> body = JsonBody(request, {{"text", JsonMember::Type::kText}}, &refusal);
  if (!body) {
    return refusal;
  }
  if (!IsNodePath(path)) {
    return NoNodePath(path);
  }
  const std::string text = body->contains("text") ? (*body)["text"].get<std::string>() : "";
  if (!body->contains("text") || text.size() > Store::kMaxTextLength ||
      text.find('\0') != std::string::npos) {
    return BadRequestReply("\"text\" takes a text of at most " +
                           std::to_string(Store::kMaxTextLength) + " bytes, without NUL");
  }
  return ChangeStore(
      store, [&] { store->Set(path, text); }, changed, AsJson({path, text}));
}

Reply DeleteNode(Store* store, const std::function<void()>& changed, const RequestView& request) {
  const std::string path = PathOf(request);
  if (!IsNodePath(path)) {
    return NoNodePath(path);
  }
  const size_t deleted = store->List(path).size();
  return ChangeStore(store, [&] { store->Delete(path); }, changed,
                     {{"path", path}, {"deleted", deleted}});
}

}  // namespace

void AddStoreRoutes(Store* store, Store* reader, const std::function<void()>& changed,
                    Router* router) {
  router->Add({.description = control_routes::kStore,
               .answer = [reader](const auto& request) { return ListNodes(reader, request); }});
  router->Add({.description = control_routes::kNode,
               .answer = [reader](const auto& request) { return GetNode(reader, request); }});
  router->Add({.description = control_routes::kPutNode,
               .handle = [store, changed](const RequestView& request) {
                 return PutNode(store, changed, request);
               }});
  router->Add({.description = control_routes::kDeleteNode,
               .handle = [store, changed](const RequestView& request) {
                 return DeleteNode(store, changed, request);
               }});
}

}  // namespace kiohost

#include "index_routes.h"

#include <fstream>
#include <sstream>

#include "accept.h"
#include "entity_tag.h"
#include "json_reply.h"
#include "route_table.h"

namespace kiohost {
namespace {

constexpr std::string_view kHtmlType = "text/html";

// Each path once, with its methods and what they do.
Json ResourcesOf(const Router& router) {
  Json resources = Json::array();
  for (const RouteDescription* route : router.Descriptions()) {
    const std::string path = PathTemplate(*route);
    if (resources.empty() || resources.back()["path"] != path) {
      resources.push_back({{"path", path}, {"methods", Json::object()}});
    }
    Json& methods = resources.back()["methods"];
    methods[std::string(route->method)] = route->summary;
    if (route->method == MHD_HTTP_METHOD_GET) {
      methods[MHD_HTTP_METHOD_HEAD] = "The same without the body.";
    }
  }
  return resources;
}

// No text of a description holds a character that means something in HTML.
std::string Page(const Router& router) {
  std::string rows;
  for (const RouteDescription* route : router.Descriptions()) {
    const std::string path = PathTemplate(*route);
    const bool is_link =
        route->method == MHD_HTTP_METHOD_GET && path.find('{') == std::string::npos;
    rows.append("<li>").append(route->method).append(" ");
    if (is_link) {
      rows.append("<a href=\"").append(path).append("\">").append(path).append("</a>");
    } else {
      rows.append(path);
    }
    rows.append(": ").append(route->summary).append("</li>\n");
  }
  return "<!DOCTYPE html>\n<html lang=\"en\">\n<head><meta charset=\"utf-8\">"
         "<title>Router</title></head>\n<body>\n<h1>Resources</h1>\n<ul>\n" +
         rows + "</ul>\n</body>\n</html>\n";
}

Reply SendIndex(const Router& router, const RequestView& request) {
  const std::string_view accept = request.Header(MHD_HTTP_HEADER_ACCEPT).value_or("");
  if (!Prefers(accept, kHtmlType, kJsonType)) {
    return JsonReply({{"resources", ResourcesOf(router)}});
  }
  Reply reply;
  reply.content_type = std::string(kHtmlType) + "; charset=utf-8";
  reply.body = Page(router);
  return reply;
}

Reply SendFile(const std::string& file, const RequestView& request) {
  std::ifstream stream(file, std::ios::binary);
  std::ostringstream text;
  if (!stream || !(text << stream.rdbuf())) {
    return ErrorReply(MHD_HTTP_INTERNAL_SERVER_ERROR, "cannot read " + file);
  }
  Reply reply;
  reply.content_type = kJsonType;
  reply.body = text.str();
  return WithEntityTag(std::move(reply), request);
}

}  // namespace

void AddIndexRoutes(const std::string& openapi, Router* router) {
  router->Add({.description = routes::kIndex, .answer = [router](const RequestView& request) {
                 return SendIndex(*router, request);
               }});
  router->Add({.description = routes::kOpenApi, .answer = [openapi](const RequestView& request) {
                 return SendFile(openapi, request);
               }});
}

}  // namespace kiohost

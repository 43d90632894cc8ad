// Prints docs/openapi.json, the interface of the host, from its routes and the list of variables;
// or docs/control-openapi.json, that of its control port.
// Usage: openapi SCHEMAS [control], with the file of the forms of the answers.
#include <algorithm>
#include <cctype>
#include <cstdio>
#include <fstream>
#include <span>
#include <string>
#include <string_view>

#include "catalogue.h"
#include "control/control_table.h"
#include "json.h"
#include "route_table.h"

namespace kio::tools {
namespace {

using kiohost::Json;
using kiohost::RouteAnswer;
using kiohost::RouteDescription;
using kiohost::RouteParameter;

constexpr unsigned int kRefusalsOfAll[] = {400, 408, 413, 415, 421, 503};
constexpr unsigned int kRefusals[] = {400, 401, 403, 404, 408, 409, 412,
                                      413, 415, 421, 422, 429, 500, 503};
constexpr unsigned int kUnauthorized = 401;
constexpr unsigned int kForbidden = 403;

const char* MeaningOf(unsigned int status, bool is_control) {
  switch (status) {
    case 400:
      return "The request, or a parameter, is malformed.";
    case kUnauthorized:
      return "The client is not logged in, or the key is not good.";
    case kForbidden:
      return "A page of another origin asks, or it must not be changed.";
    case 404:
      return "There is no such thing.";
    case 408:
      return "The request came too slowly.";
    case 409:
      return is_control ? "The router is at work or away."
                        : "Other settings wait for their confirmation.";
    case 412:
      return "The settings are not those that If-Match names.";
    case 413:
      return "The body is too large.";
    case 415:
      return "No resource takes this type of content.";
    case 421:
      return "The Host header names another host.";
    case 422:
      return "The library, or the host, refuses the value.";
    case 429:
      return "Too many wrong keys came.";
    case 500:
      return "The store or a document could not be written or read.";
    case 503:
      return "There are too many clients.";
    default:
      return "";
  }
}

Json Reference(const char* schema) {
  return {{"$ref", std::string("#/components/schemas/") + schema}};
}

bool HasRetryAfter(unsigned int status, bool is_control) {
  return (status == 409 && !is_control) || status == 429 || status == 503;
}

Json Refusal(unsigned int status, bool is_control) {
  Json refusal = {{"description", MeaningOf(status, is_control)},
                  {"content",
                   {{"text/plain; charset=utf-8", {{"schema", Reference("Line")}}},
                    {"application/problem+json", {{"schema", Reference("Problem")}}}}}};
  if (HasRetryAfter(status, is_control)) {
    refusal["headers"] = {
        {"Retry-After",
         {{"required", true}, {"schema", {{"type", "string"}, {"pattern", "^[0-9]+$"}}}}}};
  }
  return refusal;
}

Json SchemaOf(RouteParameter::Kind kind) {
  switch (kind) {
    case RouteParameter::Kind::kFlag:
      return {{"enum", {"0", "1"}}};
    case RouteParameter::Kind::kSeconds:
      return {{"type", "integer"}, {"minimum", 5}, {"maximum", 3600}};
    case RouteParameter::Kind::kNumber:
      return {{"type", "integer"}, {"minimum", 0}};
    case RouteParameter::Kind::kCharacter:
      return {{"type", "string"}, {"minLength", 1}, {"maxLength", 1}};
    case RouteParameter::Kind::kText:
      return {{"type", "string"}};
  }
  return {};
}

Json ParametersOf(const RouteDescription& route) {
  Json parameters = Json::array();
  if (route.pattern.find('*') != std::string_view::npos) {
    parameters.push_back({{"name", route.star},
                          {"in", "path"},
                          {"required", true},
                          {"schema", {{"type", "string"}, {"minLength", 1}}}});
  }
  for (const RouteParameter& parameter : route.parameters) {
    if (parameter.name != nullptr) {
      parameters.push_back({{"name", parameter.name},
                            {"in", parameter.is_header ? "header" : "query"},
                            {"description", parameter.meaning},
                            {"schema", SchemaOf(parameter.kind)}});
    }
  }
  return parameters;
}

Json ResponsesOf(const RouteDescription& route, bool has_login) {
  Json done = {{"description", route.summary}, {"content", Json::object()}};
  for (const RouteAnswer& answer : route.answers) {
    if (answer.type != nullptr) {
      done["content"][answer.type] = {{"schema", Reference(answer.schema)}};
    }
  }
  Json responses = {{"200", std::move(done)}};
  if (route.has_entity_tag) {
    responses["304"] = {{"description", "The client has it already."}};
  }
  const auto add = [&responses](unsigned int status) {
    responses[std::to_string(status)] = {
        {"$ref", "#/components/responses/Refusal" + std::to_string(status)}};
  };
  std::for_each(std::begin(kRefusalsOfAll), std::end(kRefusalsOfAll), add);
  if (has_login && !route.is_open) {
    add(kUnauthorized);
  }
  if (route.method != "GET") {
    add(kForbidden);
  }
  for (const unsigned int status : route.refusals) {
    if (status != 0) {
      add(status);
    }
  }
  return responses;
}

Json OperationOf(const RouteDescription& route, bool has_login) {
  using Need = kiohost::BodyRule::Need;
  Json operation = {{"summary", route.summary}};
  if (Json parameters = ParametersOf(route); !parameters.empty()) {
    operation["parameters"] = std::move(parameters);
  }
  if (route.body.need != Need::kNone) {
    operation["requestBody"] = {
        {"description", "The " + std::string(route.body.noun) + ": " +
                            std::to_string(route.body.limit) + " bytes at most."},
        {"required", route.body.need == Need::kFilled},
        {"content", {{"*/*", Json::object()}}}};
  }
  operation["responses"] = ResponsesOf(route, has_login);
  if (route.is_open) {
    operation["security"] = Json::array();
  }
  return operation;
}

std::string LowerCase(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return lower;
}

// The names of all variables. Those of a rule or a site have two digits.
Json VariableNames() {
  Json names = Json::array();
  Json patterns = Json::array();
  for (const CatalogueEntry& entry : ListVariables()) {
    std::string name = entry.name;
    if (const std::size_t index = name.find('?'); index != std::string::npos) {
      patterns.push_back({{"pattern", "^" + name.replace(index, 2, "[0-9]{2}") + "$"}});
    } else {
      names.push_back(name);
    }
  }
  patterns.push_back({{"enum", std::move(names)}});
  return {{"type", "string"}, {"anyOf", std::move(patterns)}};
}

struct Port {
  std::span<const RouteDescription* const> routes;
  const char* title;
  const char* description;
  bool has_login;
};

Json Interface(const Port& port, Json schemas) {
  Json paths = Json::object();
  for (const RouteDescription* route : port.routes) {
    paths[kiohost::PathTemplate(*route)][LowerCase(route->method)] =
        OperationOf(*route, port.has_login);
  }
  Json refusals = Json::object();
  for (const unsigned int status : kRefusals) {
    refusals["Refusal" + std::to_string(status)] = Refusal(status, !port.has_login);
  }
  Json interface = {
      {"openapi", "3.1.0"},
      {"info", {{"title", port.title}, {"version", "1"}, {"description", port.description}}},
      {"paths", std::move(paths)}};
  Json components = Json::object();
  if (port.has_login) {
    interface["security"] = Json::array({{{"login", Json::array()}}});
    components["securitySchemes"] = {
        {"login",
         {{"type", "http"},
          {"scheme", "KioAppKey"},
          {"description", "The address of a client that has sent its key by POST /login."}}}};
  }
  components["responses"] = std::move(refusals);
  components["schemas"] = std::move(schemas);
  interface["components"] = std::move(components);
  return interface;
}

Json RouterInterface(Json schemas) {
  schemas["VariableName"] = VariableNames();
  return Interface({kiohost::routes::kAll, "kiohost",
                    "The interface of the reference host. HEAD is served wherever GET is, and "
                    "OPTIONS everywhere.",
                    true},
                   std::move(schemas));
}

Json ControlInterface(Json schemas) {
  return Interface({kiohost::control_routes::kAll, "kiohost, control port",
                    "The control port of the reference host, for test benches. HEAD is served "
                    "wherever GET is, and OPTIONS everywhere.",
                    false},
                   std::move(schemas));
}

}  // namespace
}  // namespace kio::tools

// An exception may end it: the build then fails.
// NOLINTNEXTLINE(bugprone-exception-escape)
int main(int argc, char** argv) {
  const bool is_control = argc == 3 && std::string_view(argv[2]) == "control";
  std::ifstream stream(argc == 2 || is_control ? argv[1] : "");
  kiohost::Json schemas = kiohost::Json::parse(stream, nullptr, false);
  if (!schemas.is_object()) {
    std::fprintf(stderr, "usage: openapi SCHEMAS [control]\n");
    return 2;
  }
  const std::string text =
      kiohost::JsonText(is_control ? kio::tools::ControlInterface(std::move(schemas))
                                   : kio::tools::RouterInterface(std::move(schemas)));
  return std::fputs(text.c_str(), stdout) < 0 || std::fflush(stdout) != 0 ? 1 : 0;
}

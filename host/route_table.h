// The descriptions of all routes. A route is registered with one of these.
#ifndef HOST_ROUTE_TABLE_H
#define HOST_ROUTE_TABLE_H

#include <array>

#include "route_description.h"

namespace kiohost::routes {

using Kind = RouteParameter::Kind;
using Need = BodyRule::Need;

inline constexpr RouteParameter kDryRun = {"dry-run", Kind::kFlag,
                                           "tells what would change, and changes nothing"};
inline constexpr RouteParameter kConfirmWithin = {
    "confirm-within", Kind::kSeconds,
    "the settings go back unless they are confirmed within this time"};
inline constexpr RouteParameter kIfMatch = {"If-Match", Kind::kText,
                                            "the settings that the change was made for", true};
inline constexpr RouteParameter kIfNoneMatch = {"If-None-Match", Kind::kText,
                                                "the entity tag of what the client has", true};
inline constexpr RouteAnswer kLine = {"text/plain; charset=utf-8", "Line"};
inline constexpr RouteAnswer kForecast = {"application/json", "Forecast"};
inline constexpr RouteAnswer kResultDocument = {"application/xml", "ResultDocument"};
inline constexpr RouteAnswer kStatusDocument = {"application/xml", "StatusDocument"};

inline constexpr RouteDescription kIndex = {
    .pattern = "/",
    .method = "GET",
    .summary = "Lists the resources.",
    .answers = {{{"application/json", "Index"}, {"text/html; charset=utf-8", "Page"}}}};

inline constexpr RouteDescription kOpenApi = {
    .pattern = "/openapi.json",
    .method = "GET",
    .summary = "Describes the interface in the form of OpenAPI 3.1.",
    .parameters = {{kIfNoneMatch}},
    .answers = {{{"application/json", "OpenApi"}}},
    .refusals = {500},
    .has_entity_tag = true};

inline constexpr RouteDescription kSettings = {
    .pattern = "/settings",
    .method = "POST",
    .summary = "Runs a settings document, or tells what that would do.",
    .body = {.need = Need::kFilled, .noun = "settings document"},
    .parameters = {{kDryRun,
                    kConfirmWithin,
                    kIfMatch,
                    {"cloning", Kind::kFlag, "the settings are those of another access point"},
                    {"full", Kind::kFlag, "with cloning=1: resyncs and saves in any case"}}},
    .answers = {{kResultDocument, kForecast}},
    .refusals = {409, 412, 422, 500}};

inline constexpr RouteDescription kResult = {.pattern = "/result",
                                             .method = "GET",
                                             .summary = "Gives the last result document.",
                                             .answers = {{kResultDocument}},
                                             .refusals = {404}};

inline constexpr RouteDescription kConfirm = {
    .pattern = "/settings/confirm",
    .method = "POST",
    .summary = "Confirms settings that go back otherwise.",
    .parameters = {{kIfMatch}},
    .answers = {{kLine}},
    .refusals = {404, 412, 500}};

inline constexpr RouteDescription kTakeBack = {
    .pattern = "/settings/confirm",
    .method = "DELETE",
    .summary = "Takes settings back at once that wait for their confirmation.",
    .answers = {{kLine}},
    .refusals = {404, 500}};

inline constexpr RouteDescription kBackup = {
    .pattern = "/backup",
    .method = "GET",
    .summary = "Gives the settings as an archive.",
    .parameters = {{{"secrets", Kind::kFlag, "the archive holds passwords and keys"}}},
    .answers = {{{"application/json", "Archive"}}}};

inline constexpr RouteDescription kRestore = {
    .pattern = "/restore",
    .method = "POST",
    .summary = "Restores the settings of an archive, or tells what that would do.",
    .body = {.need = Need::kFilled, .noun = "archive"},
    .parameters = {{kDryRun,
                    kConfirmWithin,
                    kIfMatch,
                    {"other-firmware", Kind::kFlag, "takes an archive of another firmware"}}},
    .answers = {{kResultDocument, kForecast}},
    .refusals = {409, 412, 422, 500}};

inline constexpr RouteDescription kDevice = {
    .pattern = "/device",
    .method = "GET",
    .summary = "Tells what the device is, and what became of the last change.",
    .answers = {{{"application/json", "Device"}}},
    .is_open = true};

inline constexpr RouteDescription kEvents = {
    .pattern = "/events",
    .method = "GET",
    .summary = "Tells events as they happen, until the client leaves.",
    .parameters = {{{"Last-Event-ID", Kind::kText, "the id of the last event that the client had",
                     true}}},
    .answers = {{{"text/event-stream", "EventStream"}}}};

inline constexpr RouteDescription kVariables = {
    .pattern = "/vars",
    .method = "GET",
    .summary = "Lists all variables, or their values.",
    .parameters = {{{"values", Kind::kFlag, "the values, and not the list"},
                    {"secrets", Kind::kFlag, "with values=1: passwords and keys as they are"},
                    {"changed-since", Kind::kText,
                     "with values=1: only what has changed since these settings"},
                    kIfNoneMatch}},
    .answers = {{{"application/json", "VariableList"}}},
    .has_entity_tag = true};

inline constexpr RouteDescription kSetBatch = {
    .pattern = "/vars",
    .method = "POST",
    .summary = "Sets a batch of variables, or tells what that would do.",
    .body = {.need = Need::kAnything, .noun = "batch"},
    .parameters = {{kDryRun,
                    kIfMatch,
                    {"separator", Kind::kCharacter, "stands between the variables"}}},
    .answers = {{kLine, kForecast}},
    .refusals = {404, 409, 412, 422, 500}};

inline constexpr RouteDescription kDiscard = {.pattern = "/vars",
                                              .method = "DELETE",
                                              .summary = "Forgets what was set and not applied.",
                                              .answers = {{kLine}}};

inline constexpr RouteDescription kVariable = {
    .pattern = "/vars/*",
    .method = "GET",
    .summary = "Gives the value of a variable.",
    .parameters = {{{"path", Kind::kFlag, "the path of the node, and not the value"}}},
    .answers = {{{"text/plain; charset=utf-8", "Value"}}},
    .refusals = {404, 422}};

inline constexpr RouteDescription kSetVariable = {
    .pattern = "/vars/*",
    .method = "PUT",
    .summary = "Sets a variable.",
    .body = {.need = Need::kAnything, .noun = "value"},
    .answers = {{kLine}},
    .refusals = {404, 422}};

inline constexpr RouteDescription kValidate = {.pattern = "/vars/*/validate",
                                               .method = "POST",
                                               .summary = "Tells whether a value may be set.",
                                               .body = {.need = Need::kAnything, .noun = "value"},
                                               .answers = {{kLine}},
                                               .refusals = {404, 422}};

inline constexpr RouteDescription kAction = {
    .pattern = "/actions/*",
    .method = "POST",
    .summary = "Verifies, applies or commits what was set, and more.",
    .body = {.need = Need::kAnything, .noun = "batch"},
    .parameters = {{kIfMatch}},
    .answers = {{kLine}},
    .refusals = {404, 409, 412, 422, 500}};

inline constexpr RouteDescription kLogin = {
    .pattern = "/login",
    .method = "POST",
    .summary = "Logs the client in whose key the body holds.",
    .body = {.need = Need::kAnything, .noun = "key", .limit = 1024},
    .answers = {{kLine}},
    .refusals = {401, 429},
    .is_open = true};

inline constexpr RouteDescription kLogout = {
    .pattern = "/logout", .method = "POST", .summary = "Ends the login.", .answers = {{kLine}}};

inline constexpr RouteDescription kFirmwareStep = {.pattern = "/firmware/*",
                                                   .method = "POST",
                                                   .summary = "Takes a step of a firmware upgrade.",
                                                   .parameters = {{kIfMatch}},
                                                   .answers = {{kStatusDocument}},
                                                   .refusals = {409, 412, 500},
                                                   .star = "action"};

inline constexpr RouteDescription kFirmware = {
    .pattern = "/firmware",
    .method = "GET",
    .summary = "Gives the status document of the last step of an upgrade.",
    .answers = {{kStatusDocument}},
    .refusals = {404}};

// All of them, in the order of the pages.
inline constexpr std::array kAll = {
    &kIndex,   &kOpenApi,  &kLogin,       &kLogout,   &kDevice, &kEvents,    &kSettings,
    &kConfirm, &kTakeBack, &kBackup,      &kRestore,  &kResult, &kVariables, &kSetBatch,
    &kDiscard, &kVariable, &kSetVariable, &kValidate, &kAction, &kFirmware,  &kFirmwareStep};

}  // namespace kiohost::routes

#endif  // HOST_ROUTE_TABLE_H

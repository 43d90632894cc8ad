// The descriptions of all routes of the control port.
#ifndef HOST_CONTROL_CONTROL_TABLE_H
#define HOST_CONTROL_CONTROL_TABLE_H

#include <array>

#include "route_description.h"
#include "route_table.h"

namespace kiohost::control_routes {

using Kind = RouteParameter::Kind;
using Need = BodyRule::Need;

inline constexpr RouteAnswer kClockAnswer = {"application/json", "Clock"};

inline constexpr RouteDescription kClock = {.pattern = "/clock",
                                            .method = "GET",
                                            .summary = "Tells what the clock shows.",
                                            .answers = {{kClockAnswer}}};

inline constexpr RouteDescription kSetClock = {
    .pattern = "/clock",
    .method = "POST",
    .summary = "Moves, stops or sets the clock, and does all that falls due by it.",
    .body = {.need = Need::kFilled, .noun = "JSON object"},
    .answers = {{kClockAnswer}}};

inline constexpr RouteAnswer kNodeAnswer = {"application/json", "Node"};
inline constexpr RouteAnswer kSnapshotAnswer = {"application/json", "Snapshot"};

inline constexpr RouteDescription kStore = {
    .pattern = "/store",
    .method = "GET",
    .summary = "Lists the nodes of the store.",
    .parameters = {{{"under", Kind::kText, "only this node and those below it"}}},
    .answers = {{{"application/json", "Nodes"}}}};

inline constexpr RouteDescription kNode = {.pattern = "/store/*",
                                           .method = "GET",
                                           .summary = "Gives the text of a node.",
                                           .answers = {{kNodeAnswer}},
                                           .refusals = {404},
                                           .star = "node"};

inline constexpr RouteDescription kPutNode = {
    .pattern = "/store/*",
    .method = "PUT",
    .summary = "Writes a node.",
    .body = {.need = Need::kFilled, .noun = "JSON object"},
    .answers = {{kNodeAnswer}},
    .refusals = {500},
    .star = "node"};

inline constexpr RouteDescription kDeleteNode = {.pattern = "/store/*",
                                                 .method = "DELETE",
                                                 .summary = "Deletes a node and all below it.",
                                                 .answers = {{{"application/json", "Deleted"}}},
                                                 .refusals = {500},
                                                 .star = "node"};

inline constexpr RouteDescription kRecord = {.pattern = "/record",
                                             .method = "GET",
                                             .summary = "Gives the settings record of the library.",
                                             .answers = {{{"application/json", "Record"}}}};

inline constexpr RouteDescription kReset = {
    .pattern = "/reset",
    .method = "POST",
    .summary = "Puts the router back to its start, with the factory settings of a profile.",
    .body = {.need = Need::kAnything, .noun = "JSON object"},
    .answers = {{{"application/json", "Reset"}}},
    .refusals = {409, 500}};

inline constexpr RouteDescription kSnapshots = {.pattern = "/snapshots",
                                                .method = "GET",
                                                .summary = "Lists the snapshots.",
                                                .answers = {{{"application/json", "Snapshots"}}}};

inline constexpr RouteDescription kSnapshot = {.pattern = "/snapshots/*",
                                               .method = "GET",
                                               .summary = "Tells of a snapshot.",
                                               .answers = {{kSnapshotAnswer}},
                                               .refusals = {404}};

inline constexpr RouteDescription kPutSnapshot = {.pattern = "/snapshots/*",
                                                  .method = "PUT",
                                                  .summary = "Keeps the state of the router.",
                                                  .answers = {{kSnapshotAnswer}},
                                                  .refusals = {409}};

inline constexpr RouteDescription kDeleteSnapshot = {
    .pattern = "/snapshots/*",
    .method = "DELETE",
    .summary = "Forgets a snapshot.",
    .answers = {{{"application/json", "Forgotten"}}},
    .refusals = {404}};

inline constexpr RouteDescription kRestoreSnapshot = {
    .pattern = "/snapshots/*/restore",
    .method = "POST",
    .summary = "Brings the state of a snapshot back.",
    .answers = {{kSnapshotAnswer}},
    .refusals = {404, 409, 500}};

inline constexpr RouteDescription kJournal = {
    .pattern = "/journal",
    .method = "GET",
    .summary = "Gives the entries of the journal, a line each.",
    .parameters = {{{"since", Kind::kNumber, "only entries behind the one of this number"},
                    {"kinds", Kind::kText, "only entries of these kinds, with commas between"}}},
    .answers = {{{"application/jsonl", "Journal"}}}};

inline constexpr RouteDescription kJournalStream = {
    .pattern = "/journal/stream",
    .method = "GET",
    .summary = "Tells the entries of the journal as they come, until the client leaves.",
    .parameters = {{{"since", Kind::kNumber, "begins behind the entry of this number"},
                    {"kinds", Kind::kText, "only entries of these kinds, with commas between"},
                    {"Last-Event-ID", Kind::kText,
                     "the id of the last entry that the client had, instead of since", true}}},
    .answers = {{{"text/event-stream", "JournalStream"}}}};

inline constexpr RouteDescription kExpect = {
    .pattern = "/journal/expect",
    .method = "POST",
    .summary = "Compares the journal with what is expected of it.",
    .body = {.need = Need::kFilled, .noun = "JSON object"},
    .answers = {{{"application/json", "Comparison"}}},
    .refusals = {409}};

inline constexpr RouteAnswer kFaultAnswer = {"application/json", "Fault"};

inline constexpr RouteDescription kFaults = {
    .pattern = "/faults",
    .method = "GET",
    .summary = "Lists the fault rules, with how often each has acted.",
    .answers = {{{"application/json", "Faults"}}}};

inline constexpr RouteDescription kAddFault = {
    .pattern = "/faults",
    .method = "POST",
    .summary = "Adds a fault rule.",
    .body = {.need = Need::kFilled, .noun = "JSON object"},
    .answers = {{kFaultAnswer}}};

inline constexpr RouteDescription kDeleteFaults = {.pattern = "/faults",
                                                   .method = "DELETE",
                                                   .summary = "Removes all fault rules.",
                                                   .answers = {{{"application/json", "Removed"}}}};

inline constexpr RouteDescription kFault = {.pattern = "/faults/*",
                                            .method = "GET",
                                            .summary = "Tells of a fault rule.",
                                            .answers = {{kFaultAnswer}},
                                            .refusals = {404},
                                            .star = "id"};

inline constexpr RouteDescription kDeleteFault = {.pattern = "/faults/*",
                                                  .method = "DELETE",
                                                  .summary = "Removes a fault rule.",
                                                  .answers = {{kFaultAnswer}},
                                                  .refusals = {404},
                                                  .star = "id"};

// All of them, in the order of the page.
inline constexpr std::array kAll = {
    &routes::kIndex, &routes::kOpenApi, &kClock,           &kSetClock, &kStore,         &kNode,
    &kPutNode,       &kDeleteNode,      &kRecord,          &kReset,    &kSnapshots,     &kSnapshot,
    &kPutSnapshot,   &kDeleteSnapshot,  &kRestoreSnapshot, &kJournal,  &kJournalStream, &kExpect,
    &kFaults,        &kAddFault,        &kDeleteFaults,    &kFault,    &kDeleteFault};

}  // namespace kiohost::control_routes

#endif  // HOST_CONTROL_CONTROL_TABLE_H

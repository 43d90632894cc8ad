#include "answers.h"

#include <cstdlib>
#include <pugixml.hpp>

#include "status.h"

namespace kioctl {
namespace {

using nlohmann::json;

// The element `root` of an answer.
pugi::xml_node RootOf(const std::string& xml, const char* marker, pugi::xml_document* document) {
  // The blanks of a text belong to it.
  const auto parsed = document->load_buffer(xml.data(), xml.size(), pugi::parse_default);
  const pugi::xml_node root = document->child("root");
  if (!parsed || !root.child(marker)) {
    throw Strange("the answer is not the document that was expected: " + xml.substr(0, 80));
  }
  return root;
}

// What is accepted, in words.
std::string Accepted(const json& accepts) {
  std::string text;
  const auto add = [&text](const std::string& part) { text += (text.empty() ? "" : ", ") + part; };
  const auto list = [](const json& words) {
    std::string all;
    for (const json& word : words) {
      all += (all.empty() ? "" : " ") + word.get<std::string>();
    }
    return all;
  };
  if (accepts.contains("words")) {
    add("one of: " + list(accepts["words"]));
  }
  if (accepts.contains("minimum")) {
    add("from " + accepts["minimum"].dump());
  }
  if (accepts.contains("maximum")) {
    add("up to " + accepts["maximum"].dump());
  }
  if (accepts.contains("minLength")) {
    add("at least " + accepts["minLength"].dump() + " characters");
  }
  if (accepts.contains("maxLength")) {
    add("at most " + accepts["maxLength"].dump() + " characters");
  }
  if (accepts.contains("only")) {
    add("of these characters: " + list(accepts["only"]));
  }
  if (accepts.contains("not")) {
    add("without these: " + list(accepts["not"]));
  }
  return text;
}

std::string RetryAdvice(const Reply& reply) {
  const std::string seconds = reply.Header("retry-after");
  return seconds.empty() ? "try again later" : "try again in " + seconds + " s";
}

// What the variable takes that was refused.
std::string Takes(const json& problem) {
  const json accepts = problem.value("accepts", json::object());
  std::string takes = problem.value("rule", "");
  // Some rules name the words themselves.
  const json words = accepts.value("words", json::array());
  if (words.empty() || takes.find(words.front().get<std::string>()) == std::string::npos) {
    const std::string accepted = Accepted(accepts);
    takes += (takes.empty() || accepted.empty() ? "" : ", ") + accepted;
  }
  return takes;
}

// What to do about a refusal.
std::string Advice(const Reply& reply, const json& problem) {
  switch (reply.status) {
    case kUnauthorized:
      return "check the password, and that no address is translated on the way to the router";
    case kForbidden:
      return problem.contains("variable") || reply.body.starts_with("1 ")
                 ? "the router has locked this section: see changeableNow of kioctl vars "
                   "--catalogue"
                 : "log in anew: kioctl login";
    case kNotFound:
      return problem.contains("variable") || reply.body.starts_with("2 ")
                 ? "list the names: kioctl vars"
                 : "there is nothing of that kind now: kioctl device tells the state";
    case kConflict:
      return "kioctl confirm keeps the settings that wait, kioctl confirm --take-back undoes "
             "them; " +
             RetryAdvice(reply);
    case kPreconditionFailed:
      return "look at what has changed (kioctl device, kioctl vars), then give the present id";
    case kTooLarge:
      return "send less: a document has at most 64 KiB";
    case kMisdirected:
      return "name the router by its address, or by a name that it knows";
    case kTooManyRequests:
    case kUnavailable:
      return RetryAdvice(reply);
    case kServerError:
      return "the settings are as before; look at the router's disk and log";
    default:
      break;
  }
  const std::string takes = Takes(problem);
  if (!takes.empty()) {
    return "it takes " + takes;
  }
  return reply.status == kUnprocessable ? "mend the value; kioctl vars --catalogue has the rules"
                                        : "mend the request; docs/http.md describes the interface";
}

}  // namespace

ResultDocument ReadResult(const std::string& xml) {
  pugi::xml_document document;
  const pugi::xml_node root = RootOf(xml, "RssSetResult", &document);
  return {root.child("RssSetResult").text().as_int(), root.child_value("RssSetMsg"),
          root.child("RssGetWaitSec").text().as_int()};
}

FirmwareStatus ReadFirmwareStatus(const std::string& xml) {
  pugi::xml_document document;
  const pugi::xml_node root = RootOf(xml, "result", &document);
  return {root.child("result").text().as_int(), root.child_value("fwver"),
          root.child_value("fwsize"), root.child("time").text().as_int()};
}

json ReadJson(const std::string& text) {
  json value = json::parse(text, nullptr, false);
  if (value.is_discarded()) {
    throw Strange("the answer is not JSON: " + text.substr(0, 80));
  }
  return value;
}

std::string MeaningOf(int code) {
  switch (code) {
    case 0:
      return "applied";
    case 1:
      return "the document's format version is not the device's";
    case 2:
      return "a required element is missing";
    case 3:
      return "a value is invalid or cannot be changed";
    case 10:
      return "the length of a text is out of range";
    case 11:
      return "a text holds a character that is not allowed";
    case 20:
      return "a number is above its maximum";
    case 21:
      return "a number is below its minimum";
    default:
      return "code " + std::to_string(code);
  }
}

json ToJson(const ResultDocument& result) {
  return {{"result", result.code},
          {"message", result.message},
          {"meaning", MeaningOf(result.code)},
          {"wait", result.wait_seconds}};
}

json ToJson(const FirmwareStatus& status) {
  return {{"result", status.result},
          {"version", status.version},
          {"size", status.size},
          {"time", status.seconds}};
}

Failure Refusal(const Reply& reply) {
  Failure failure{ExitCode::kRefused, "", ""};
  if (reply.status == kUnauthorized || reply.status == kTooManyRequests) {
    failure.code = ExitCode::kNotLoggedIn;
  }
  json problem = json::parse(reply.body, nullptr, false);
  if (problem.is_object()) {
    failure.what = problem.value("detail", "");
    for (const char* const member : {"code", "element", "variable", "rule", "accepts"}) {
      if (problem.contains(member)) {
        failure.details[member] = problem[member];
      }
    }
  } else {
    problem = json::object();
    failure.what = reply.body.substr(0, reply.body.find('\n'));
  }
  if (failure.what.empty()) {
    failure.what = "the router refuses";
  }
  if (failure.details.contains("variable") &&
      failure.what.find(failure.details["variable"].get<std::string>()) == std::string::npos) {
    failure.what += " (" + failure.details["variable"].get<std::string>() + ")";
  }
  failure.details["status"] = reply.status;
  failure.next = Advice(reply, problem);
  return failure;
}

void ThrowUnlessDone(const Reply& reply) {
  if (reply.status != kOk && reply.status != kNoContent) {
    throw Refusal(reply);
  }
}

Failure RefusalOf(const ResultDocument& result) {
  Failure failure{ExitCode::kRefused, MeaningOf(result.code), ""};
  if (!result.message.empty()) {
    failure.what += ": " + result.message;
  }
  failure.details = {{"code", result.code}, {"element", result.message}};
  failure.next = "mend this element; docs/documents.md has what it takes";
  return failure;
}

}  // namespace kioctl

#include "journal.h"

#include <algorithm>
#include <cctype>
#include <utility>

#include "secrets.h"
#include "uptime.h"

namespace kiohost {
namespace {

constexpr size_t kLeastSecret = 4;
constexpr std::string_view kWrite = "write";

// How many hold the notes of the store back. Only the thread of the library asks and does so.
int g_holders = 0;

// Whether a line of the log tells a secret: what a document asks for, or a key that was shown.
bool TellsSecret(std::string_view line) {
  std::string lower(line);
  std::transform(lower.begin(), lower.end(), lower.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  constexpr std::string_view kWords[] = {"pwd", "password", "encryptionkey", "appkey", "bkey"};
  return std::any_of(std::begin(kWords), std::end(kWords), [&lower](std::string_view word) {
    return lower.find(word) != std::string::npos;
  });
}

}  // namespace

void Journal::Begin(bool show_secrets) {
  show_secrets_ = show_secrets;
  is_on_ = true;
}

void Journal::AddSecret(const std::string& text) {
  if (text.size() >= kLeastSecret) {
    const std::lock_guard lock(mutex_);
    secrets_.insert(text);
  }
}

std::string Journal::Masked(std::string text) const {
  for (const std::string& secret : secrets_) {
    for (size_t at = text.find(secret); at != std::string::npos;
         at = text.find(secret, at + kMasked.size())) {
      text.replace(at, secret.size(), kMasked);
    }
  }
  return text;
}

void Journal::Add(std::string_view kind, Json about) {
  if (!is_on_) {
    return;
  }
  const long uptime = UptimeSeconds();
  {
    const std::lock_guard lock(mutex_);
    Json entry = {{"n", ++last_}, {"uptime", uptime}, {"kind", kind}};
    for (auto& [name, value] : about.items()) {
      entry[name] = value.is_string() && !show_secrets_ ? Json(Masked(value.get<std::string>()))
                                                        : std::move(value);
    }
    entries_.push_back({std::move(entry), kind == kWrite});
    if (entries_.size() > kMost) {
      entries_.pop_front();
    }
  }
  if (listener_) {
    listener_();
  }
}

Json Journal::NodeText(const std::string& path, const std::optional<std::string>& text) {
  if (!text) {
    return nullptr;
  }
  if (!show_secrets_ && IsSecret(path)) {
    AddSecret(*text);
    return kMasked;
  }
  return *text;
}

void Journal::AddRead(const std::string& path, const std::optional<std::string>& text) {
  Json shown = NodeText(path, text);
  Add("read", {{"path", path}, {"text", std::move(shown)}});
}

void Journal::AddWrite(const std::string& path, const std::optional<std::string>& before,
                       const std::optional<std::string>& after, bool done) {
  Json about = {{"path", path}, {"old", NodeText(path, before)}, {"new", NodeText(path, after)}};
  if (!done) {
    about["failed"] = true;
  }
  Add(kWrite, std::move(about));
}

void Journal::AddOutput(std::string_view line) {
  constexpr std::string_view kAction = "action ";
  constexpr std::string_view kEvent = "event ";
  if (line.starts_with(kAction)) {
    const size_t colon = std::min(line.find(':'), line.size());
    Add("action", {{"name", line.substr(kAction.size(), colon - kAction.size())},
                   {"text", line.substr(std::min(colon + 2, line.size()))}});
  } else if (line.starts_with(kEvent)) {
    Add("event", {{"text", line.substr(kEvent.size())}});
  } else {
    Add("said", {{"text", line}});
  }
}

void Journal::AddLogLine(const std::string& line) {
  Add("log", {{"text", !show_secrets_ && TellsSecret(line) ? std::string(kMasked) : line}});
}

void Journal::BeginWrites() {
  const std::lock_guard lock(mutex_);
  writes_behind_ = last_;
}

// Called when an object ends: it throws nothing.
void Journal::EndWrites(bool undone) {
  {
    const std::lock_guard lock(mutex_);
    const std::optional<uint64_t> begin = std::exchange(writes_behind_, std::nullopt);
    if (!begin) {
      return;
    }
    const uint64_t dropped = last_ - entries_.size();
    for (size_t i = entries_.size(); undone && i > 0 && dropped + i > *begin; --i) {
      entries_[i - 1].is_undone = entries_[i - 1].is_write;
    }
  }
  if (listener_) {
    listener_();
  }
}

uint64_t Journal::last() const {
  const std::lock_guard lock(mutex_);
  return last_;
}

uint64_t Journal::dropped() const {
  const std::lock_guard lock(mutex_);
  return last_ - entries_.size();
}

uint64_t Journal::settled() const {
  const std::lock_guard lock(mutex_);
  return writes_behind_.value_or(last_);
}

Json Journal::AsJson(const Entry& entry) {
  Json json = entry.json;
  if (entry.is_undone) {
    json["undone"] = true;
  }
  return json;
}

std::optional<Json> Journal::Find(uint64_t number) const {
  const std::lock_guard lock(mutex_);
  const uint64_t first = last_ - entries_.size();  // the number before the oldest
  return number > first && number <= last_ ? std::optional(AsJson(entries_[number - first - 1]))
                                           : std::nullopt;
}

std::vector<Json> Journal::Since(uint64_t number) const {
  const std::lock_guard lock(mutex_);
  const uint64_t first = last_ - entries_.size();  // the number before the oldest
  const uint64_t skip = std::min<uint64_t>(number > first ? number - first : 0, entries_.size());
  std::vector<Json> found;
  for (size_t i = skip; i < entries_.size(); ++i) {
    found.push_back(AsJson(entries_[i]));
  }
  return found;
}

Journal& TheJournal() {
  static Journal journal;
  return journal;
}

UnnotedStore::UnnotedStore() { ++g_holders; }

UnnotedStore::~UnnotedStore() { --g_holders; }

bool NotesStore() { return TheJournal().is_on() && g_holders == 0; }

}  // namespace kiohost

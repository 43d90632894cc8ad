#include "completion.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <iterator>

namespace kioctl {
namespace {

void Offer(const std::string& word, const std::string& description, const std::string& begun) {
  if (word.starts_with(begun)) {
    std::printf("%s\t%s\n", word.c_str(), description.c_str());
  }
}

void OfferOptions(const CLI::App& app, const std::string& begun) {
  for (const CLI::Option* const option : app.get_options()) {
    for (const std::string& name : option->get_lnames()) {
      Offer("--" + name, option->get_description(), begun);
    }
  }
}

}  // namespace

void Complete(const CLI::App& app, const std::vector<std::string>& words) {
  const std::string begun = words.empty() ? "" : words.back();
  const CLI::App* command = &app;
  for (size_t i = 0; i + 1 < words.size(); ++i) {
    const auto named =
        command->get_subcommands([&](const CLI::App* one) { return one->get_name() == words[i]; });
    command = named.empty() ? command : named.front();
  }
  for (const CLI::App* const one : command->get_subcommands([](const CLI::App*) { return true; })) {
    Offer(one->get_name(), one->get_description(), begun);
  }
  if (begun.starts_with("-")) {
    OfferOptions(*command, begun);
    // Those of the program stand anywhere.
    if (command != &app) {
      OfferOptions(app, begun);
    }
  }
}

}  // namespace kioctl

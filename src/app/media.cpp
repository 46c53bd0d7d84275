// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/media.h"

#include <CLI/CLI.hpp>
#include <map>

#include "link/commserror.h"

namespace krx {

namespace {

const std::map<std::string, MediumKind> mediumNames{
    {"auto", MediumKind::Auto}, {"simulated", MediumKind::Simulated}, {"linux", MediumKind::Linux}};

}  // namespace

void AddMediaOptions(CLI::App& app, MediaOptions& options) {
  app.add_option("--medium", options.Medium, "bus to use: simulated, linux or auto")
      ->transform(CLI::CheckedTransformer(mediumNames, CLI::ignore_case).description("NAME"))
      ->type_name("NAME");
}

Media ChooseMedia(const MediaOptions& options, Clock&) {
  Media media;
  media.Kind = options.Medium;
  media.Factory = []() -> std::unique_ptr<CommsModule> { throw CommsError(5, "No bus is built in yet"); };
  return media;
}

}  // namespace krx

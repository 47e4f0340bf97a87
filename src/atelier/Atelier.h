// The whole set: draws forms and writes their sheets, descriptions and portraits into a folder.
#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <span>

#include "atelier/Form.h"
#include "atelier/Sheet.h"

namespace quibbits::atelier {

/// Is told, on the thread that asked for the work, what share of it is done.
using Progress = std::function<void(double share)>;

/// Writes the set of the given forms, drawing on as many threads as the machine has. False when a
/// file cannot be written.
bool writeSet(const std::filesystem::path& folder, std::span<const Form> chosen,
              const Progress& progress = {});

bool writePng(const std::filesystem::path& path, const Image& image);
/// Writes a whole file; an empty one counts as a failure.
bool writeBytes(const std::filesystem::path& path, std::span<const std::byte> bytes);

}  // namespace quibbits::atelier

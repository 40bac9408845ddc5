#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace epg {

class PluginSession;
struct CommandContext;

/// The names of the tags that the editor offers, in its order; empty when the program was installed without its
/// resources, or with unusable ones. Asks the plug-in for its editor view.
std::vector<std::string> tagCatalogue(PluginSession& session);

/// What to tell people when there is no catalogue: that there is no file, or what is wrong with it, and where.
std::string missingCatalogueMessage(CommandContext& context, PluginSession& session);

/// Where each of the tags stands in the catalogue. Throws a `Refusal` that names those that it does not have, with
/// those of its own that may have been meant.
std::vector<std::size_t> tagIndexes(const std::vector<std::string>& catalogue, const std::vector<std::string>& tags);

/// The names that somebody who wrote `wanted` may have meant, the nearest first, five at most: those that differ in
/// few letters, contain it or are contained in it; capitals do not count.
std::vector<std::string> nearNames(const std::vector<std::string>& names, const std::string& wanted);

}  // namespace epg

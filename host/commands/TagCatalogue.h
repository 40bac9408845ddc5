#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace epg {

class PluginSession;
struct CommandContext;

/// The names of the tags that the editor offers, in its order; empty when the resources of the program are missing or
/// cannot be used. Makes the plug-in load its editor view.
std::vector<std::string> tagCatalogue(PluginSession& session);

/// The message when there is no catalogue: that its file is missing, or what is wrong in it.
std::string missingCatalogueMessage(CommandContext& context, PluginSession& session);

/// The indexes of the tags in the catalogue. Throws a `Refusal` that names tags that are not in it, each with similar
/// tags that are.
std::vector<std::size_t> tagIndexes(const std::vector<std::string>& catalogue, const std::vector<std::string>& tags);

/// Up to five names that are similar to `wanted`, the most similar first: they differ in a few letters, contain it or
/// are contained in it. Upper and lower case count as equal.
std::vector<std::string> nearNames(const std::vector<std::string>& names, const std::string& wanted);

}  // namespace epg

#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace epg {

class PluginSession;

/// Opens the editor over the entries: the view first, then their IDs, without which it would stay empty.
void openEditor(PluginSession& session, const std::vector<std::string>& ids);

/// Writes what the open editor shows: the three fields, then the tags with "[x]", "[ ]" and "[-]" (mixed), a line each.
void writeEditor(PluginSession& session, std::ostream& output);

/// Those of the IDs that have no item, each once, in their order.
std::vector<std::string> idsWithoutItem(PluginSession& session, const std::vector<std::string>& ids);

}  // namespace epg

#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace epg {

class PluginSession;

/// Opens the editor over the entries.
void openEditor(PluginSession& session, const std::vector<std::string>& ids);

/// Writes what the open editor shows: the three fields, then the tags with "[x]", "[ ]" and "[-]" (mixed), a line each.
void writeEditor(PluginSession& session, std::ostream& output);

}  // namespace epg

#include <iostream>
#include <utility>

#include "model/EPGItem.h"
#include "plugin/EPGDorvaSelinManagerPlugin.h"
#include "plugin/KeyConstants.h"

namespace {

class Host : public epg::TelvarinManagerEPGPluginProtocol_Delegate {
 public:
  // On the export's own thread.
  void epgExportEventCompleted(bool succeeded, const epg::EPGError* error) override {
    std::cout << (succeeded ? "exported" : error->localizedDescription) << std::endl;
  }
};

}  // namespace

int main(int argumentCount, char** arguments) {
  if (argumentCount != 2) return 2;
  Host host;
  // Without a bundle there is no editor view; items are edited as data.
  auto plugin = epg::EPGDorvaSelinManagerPlugin::initWithBundle(nullptr, arguments[1]);
  plugin->setDelegate(&host);

  plugin->setEditedEPGUniqueIDs({"E1"});
  plugin->editedItems()->at(0)->set(epg::ZRLEPGDSTitleKey, "Morning Headlines");
  plugin->commitEditing();

  epg::EPGEvent event;
  event.eventEPGUniqueID = "E1";
  event.eventEPGPlaybackUniqueID = "P1";
  event.eventEPGStartDateTime = epg::Instant::fromUnixTime(1794636000);  // 14 November 2026, 06:00 UTC
  event.eventEPGEndDateTime = epg::Instant::fromUnixTime(1794637800);
  plugin->exportEvents({event}, plugin->configurationFilenames().front());

  // Save and export run on threads that keep the plug-in: when it is gone, both have ended.
  const auto end = plugin->end();
  plugin.reset();
  end->wait();
  return 0;
}

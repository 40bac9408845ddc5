// Reads lines with a time zone and a time ("Europe/Rome 1330884309.5") from standard input and writes for each the
// local time to standard output ("2012 3 4 19 5 9", or "none"). With the argument "narrow" it tells them as a system
// does whose clock has 32 bits.

#include <stdlib.h>

#include <iostream>
#include <sstream>
#include <string>

#include "platform/LocalCalendar.h"

int main(int argc, char** argv) {
  using epg::SystemTime;
  const bool narrow = argc > 1 && std::string(argv[1]) == "narrow";
  std::ios::sync_with_stdio(false);
  std::string line;
  while (std::getline(std::cin, line)) {
    std::istringstream fields(line);
    std::string zone;
    double unixTime = 0;
    if (!(fields >> zone >> unixTime)) return 1;
    ::setenv("TZ", zone.c_str(), 1);
    const auto local = epg::LocalCalendar(epg::systemZone(narrow ? SystemTime::ThirtyTwoBits : SystemTime::Natural))
                           .components(epg::Instant::fromUnixTime(unixTime));
    if (local) {
      std::cout << local->year << ' ' << local->month << ' ' << local->day << ' ' << local->hour << ' ' << local->minute
                << ' ' << local->second << '\n';
    } else {
      std::cout << "none\n";
    }
  }
  return 0;
}

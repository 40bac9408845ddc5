#pragma once

#include <string>

#include "tests/support/Events.h"

namespace epg::test {

/// The day file of two entries on 5 March 2012 in Berlin, to the byte.
inline std::string workedExample() {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
         "<programs dateFrom=\"05-03-2012\" dateTo=\"06-03-2012\">\n"
         "    <program id=\"" +
         byWordWidth("7118868021960440957", "4961821") +
         "\">\n"
         "        <date>\n"
         "            <day>5</day>\n"
         "            <month>3</month>\n"
         "            <year>12</year>\n"
         "        </date>\n"
         "        <time>\n"
         "            <hour>6</hour>\n"
         "            <minute>30</minute>\n"
         "        </time>\n"
         "        <title>Morning Prayer</title>\n"
         "        <description>Live from studio 2</description>\n"
         "        <imgUrl>images/prayer.jpg</imgUrl>\n"
         "        <tags>\n"
         "            <tag>Live</tag>\n"
         "            <tag>Family</tag>\n"
         "        </tags>\n"
         "    </program>\n"
         "    <program>\n"
         "        <date>\n"
         "            <day>5</day>\n"
         "            <month>3</month>\n"
         "            <year>12</year>\n"
         "        </date>\n"
         "        <time>\n"
         "            <hour>23</hour>\n"
         "            <minute>5</minute>\n"
         "        </time>\n"
         "        <title>Kids&#39; Corner</title>\n"
         "        <description>Q&amp;A with guests</description>\n"
         "        <imgUrl></imgUrl>\n"
         "        <tags></tags>\n"
         "    </program>\n"
         "</programs>\n";
}

}  // namespace epg::test

// BareParse GUIDE: reads the file into pugixml's tree and does nothing with it.

#include <pugixml.hpp>

int main(int argc, char** argv) {
  pugi::xml_document document;
  return argc == 2 && document.load_file(argv[1]) ? 0 : 1;
}

add_library(pugixml::pugixml INTERFACE IMPORTED)

add_library(utf8cpp INTERFACE IMPORTED)
target_include_directories(utf8cpp SYSTEM INTERFACE /usr/include/utf8cpp)

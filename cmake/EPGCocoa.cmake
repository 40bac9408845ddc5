# EPGCocoa: what Objective-C and Objective-C++ code needs to be compiled and linked, from Apple or from GNUstep.

add_library(EPGCocoa INTERFACE)

if(APPLE)
  target_link_libraries(EPGCocoa INTERFACE "-framework Cocoa")
  target_compile_options(EPGCocoa INTERFACE $<$<COMPILE_LANGUAGE:OBJC,OBJCXX>:-fno-objc-arc>)
else()
  # As cmake/EPGBundle.cmake asked for them.
  separate_arguments(epg_gnustep_flags UNIX_COMMAND "${epg_gnustep_objc_flags}")
  separate_arguments(epg_gnustep_libraries UNIX_COMMAND "${epg_gnustep_gui_libs}")

  # Of the flags only what the headers and the runtime depend on: optimisation and warnings are this build's own.
  set(epg_gnustep_options ${epg_gnustep_flags})
  list(FILTER epg_gnustep_options INCLUDE REGEX "^-(D|f)")
  list(REMOVE_ITEM epg_gnustep_options -fPIC -DGSWARN -DGSDIAGNOSE)
  set(epg_gnustep_folders ${epg_gnustep_flags})
  list(FILTER epg_gnustep_folders INCLUDE REGEX "^-I/")
  list(TRANSFORM epg_gnustep_folders REPLACE "^-I" "")
  target_compile_options(EPGCocoa INTERFACE "$<$<COMPILE_LANGUAGE:OBJC,OBJCXX>:${epg_gnustep_options}>")
  # GNUstep's headers do not stand up to this project's warnings.
  target_include_directories(EPGCocoa SYSTEM INTERFACE ${epg_gnustep_folders})
  target_link_options(EPGCocoa INTERFACE -shared-libgcc -rdynamic)
  list(FILTER epg_gnustep_libraries INCLUDE REGEX "^-[lL]")
  target_link_libraries(EPGCocoa INTERFACE ${epg_gnustep_libraries} Threads::Threads)

  if(CMAKE_OBJCXX_COMPILER_ID MATCHES "Clang")
    # The runtime is GCC's, and so are its headers, which may stand behind clang's own only.
    execute_process(COMMAND gcc -print-file-name=include
      OUTPUT_VARIABLE epg_objc_headers OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    target_compile_options(EPGCocoa INTERFACE
      "$<$<COMPILE_LANGUAGE:OBJC,OBJCXX>:-fobjc-runtime=gcc;SHELL:-idirafter ${epg_objc_headers}>")
  endif()
endif()

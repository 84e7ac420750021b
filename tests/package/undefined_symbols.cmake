cmake_minimum_required(VERSION 3.25)

# Compares what LIBRARY needs from elsewhere with the kept list, so that a new dependency is a
# decision: cmake -DLIBRARY=... -DNM=... [-DEXACT=ON] [-DUPDATE=ON] -P this
#
# The list is that of g++'s release library. Other compilers and targets put other functions inline:
# what they may need besides stands in a list of its own. EXACT also refuses what is kept and not
# needed.

# The versions of the symbols are taken off before the names are demangled, because not every nm
# demangles a name that has one.
execute_process(COMMAND "${NM}" --dynamic --undefined-only "${LIBRARY}"
  OUTPUT_VARIABLE listing COMMAND_ERROR_IS_FATAL ANY)
string(REGEX REPLACE "(^|\n) +[Uwv] " "\\1" listing "${listing}")
string(REGEX REPLACE "@+[A-Z]+[_0-9.]*(\n|$)" "\\1" listing "${listing}")
find_program(CXXFILT NAMES c++filt llvm-cxxfilt REQUIRED)
string(REGEX REPLACE "\n$" "" listing "${listing}")
string(REPLACE "\n" ";" mangled "${listing}")
execute_process(COMMAND "${CXXFILT}" ${mangled} OUTPUT_VARIABLE listing COMMAND_ERROR_IS_FATAL ANY)
string(REPLACE "[abi:cxx11]" "" listing "${listing}")
string(REPLACE "std::__cxx11::basic_string<char, std::char_traits<char>, std::allocator<char> >"
  "std::string" listing "${listing}")
# Which members of std::string are put inline is the compiler's choice; how wide a size is, the
# target's.
string(REGEX REPLACE "(^|\n)std::string::[^\n]*" "\\1members of std::string" listing "${listing}")
string(REPLACE "unsigned int" "unsigned long" listing "${listing}")
string(REPLACE ";" "," listing "${listing}")
string(REPLACE "\n" ";" symbols "${listing}")
list(REMOVE_ITEM symbols "")
list(REMOVE_DUPLICATES symbols)
list(SORT symbols)

list(FIND symbols XML_Parse index)
if(index EQUAL -1)
  message(FATAL_ERROR "${LIBRARY} does not even need XML_Parse: this is no list of what it needs")
endif()

# What small C libraries and C++ runtimes lack, or what costs too much.
set(banned
  "__cxa_throw$" __cxa_rethrow __cxa_allocate_exception # the library throws nothing itself
  __cxa_thread_atexit
  "std::locale" "std::(__cxx11::)?(collate|ctype|num_get|num_put|numpunct|messages|time_get|time_put|money)"
  "std::(__cxx11::)?basic_(ios|istream|ostream|iostream|streambuf|filebuf|stringbuf|[io]?fstream|[io]?stringstream)"
  "std::ios_base"
  "std::filesystem" "std::(__cxx11::)?(basic_)?regex" "std::__throw_regex_error")
list(JOIN banned "|" banned)
set(refused ${symbols})
list(FILTER refused INCLUDE REGEX "${banned}")
if(refused)
  list(JOIN refused "\n  " refused)
  message(FATAL_ERROR "the library must not need:\n  ${refused}")
endif()

set(kept_file "${CMAKE_CURRENT_LIST_DIR}/undefined_symbols.txt")
if(UPDATE)
  list(JOIN symbols "\n" found)
  file(WRITE "${kept_file}" "${found}\n")
endif()
function(read_list file result)
  file(STRINGS "${file}" names REGEX "^[^#]")
  set(${result} "${names}" PARENT_SCOPE)
endfunction()
read_list("${kept_file}" kept)
read_list("${CMAKE_CURRENT_LIST_DIR}/undefined_symbols_elsewhere.txt" elsewhere)

set(added ${symbols})
list(REMOVE_ITEM added ${kept})
if(NOT EXACT)
  list(REMOVE_ITEM added ${elsewhere})
endif()
set(missing)
if(EXACT)
  set(missing ${kept})
  list(REMOVE_ITEM missing ${symbols})
endif()
if(added OR missing)
  list(JOIN missing "\n  " missing)
  list(JOIN added "\n  " added)
  message(FATAL_ERROR "what the library needs differs from the kept list\nno longer needed:\n  ${missing}\nadded:\n  ${added}")
endif()

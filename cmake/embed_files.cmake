# Turns the files of data/ into a source file, so that a first run needs nothing beside the program.
#   cmake -DOUT=first_run_data.cpp -DFOLDER=data -P embed_files.cmake
file(GLOB names RELATIVE ${FOLDER} ${FOLDER}/*.txt ${FOLDER}/*.asc)
list(SORT names COMPARE NATURAL)

set(arrays "")
set(entries "")
set(number 0)
foreach(name IN LISTS names)
  math(EXPR number "${number} + 1")
  file(READ "${FOLDER}/${name}" hex HEX)
  string(REGEX REPLACE "(..)" "'\\\\x\\1'," bytes "${hex}")
  string(REGEX REPLACE "((......,)(......,)?(......,)?(......,)?(......,)?(......,)?(......,)?(......,)?)"
         "    \\1\n" bytes "${bytes}")
  string(APPEND arrays "constexpr char kFile${number}[] = {\n${bytes}};\n")
  string(APPEND entries "      {\"${name}\", {kFile${number}, sizeof kFile${number}}},\n")
endforeach()

file(WRITE ${OUT}.new
"// Made from the files of data/ by the build.
#include \"core/first_run_data.h\"

namespace penlog {

namespace {

${arrays}
}  // namespace

const std::vector<FirstRunFile>& FirstRunFiles() {
  static const std::vector<FirstRunFile> files = {
${entries}  };
  return files;
}

}  // namespace penlog
")
file(RENAME ${OUT}.new ${OUT})

# What turns bytes into records, for the tool and for the module of python/, which has no other part of
# the tool: it does no input and no output.
set(KALO_READING
    time/calendarDate.cpp
    time/dating.cpp
    input/checksum.cpp
    input/kinds.cpp
    input/lineSplitter.cpp
    input/pieces.cpp
    input/stamp.cpp
    input/surroundings.cpp
    input/tagBlock.cpp
    record/dictionary.cpp
    record/dictionaryFile.cpp
    record/dictionaryRows.cpp
    record/plausible.cpp
    record/recordClue.cpp
    record/range.cpp
    record/readerState.cpp
    record/recordReader.cpp
    record/recordTable.cpp
    record/registry.cpp
    record/satelliteGroups.cpp
    record/sent.cpp
    record/sentenceReaders.cpp
    record/tableRows.cpp
    output/numberText.cpp
    output/utf8.cpp
    output/valueText.cpp)
list(TRANSFORM KALO_READING PREPEND ${CMAKE_CURRENT_LIST_DIR}/)

# And records into columns.
set(KALO_COLUMNS
    column/array.cpp
    column/arrowExport.cpp
    column/columnReader.cpp
    column/columnTable.cpp)
list(TRANSFORM KALO_COLUMNS PREPEND ${CMAKE_CURRENT_LIST_DIR}/)

# The dictionary is part of the program.
set(sentences ${CMAKE_CURRENT_LIST_DIR}/record/sentences.toml)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${sentences})
file(READ ${sentences} KALO_SENTENCES)
configure_file(${CMAKE_CURRENT_LIST_DIR}/record/builtInSentences.h.in
    ${PROJECT_BINARY_DIR}/generated/tools/record/builtInSentences.h @ONLY)

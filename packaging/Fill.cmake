# cmake -D TYPES=FILE -D INPUT=FILE -D OUTPUT=FILE [-D NAME=VALUE]… -P Fill.cmake
# Writes OUTPUT from the template INPUT, with what TYPES says of the photos.
include(${TYPES})
configure_file(${INPUT} ${OUTPUT} @ONLY)

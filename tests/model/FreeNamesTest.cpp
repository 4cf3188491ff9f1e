#include "model/FreeNames.h"
#include "support/FakeFileSystem.h"
#include <doctest/doctest.h>

using namespace pixelhain;

TEST_CASE("numbers stand before the last extension, unpadded; the first name has none")
{
    CHECK(numberedName("IMG_0001.jpg", 1) == "IMG_0001.jpg");
    CHECK(numberedName("IMG_0001.jpg", 2) == "IMG_0001 2.jpg");
    CHECK(numberedName("IMG_0001.jpg", 137) == "IMG_0001 137.jpg");
    CHECK(numberedName("README", 2) == "README 2");
    CHECK(numberedName("a.tar.gz", 2) == "a.tar 2.gz");
    CHECK(numberedName(".profile", 2) == ".profile 2");
    CHECK(numberedName("a.", 2) == "a. 2");
    CHECK(numberedName("\xFF\xFE.jpg", 2) == "\xFF\xFE 2.jpg");
}

TEST_CASE("a free name is kept, a taken one gets the first number that is free")
{
    FakeFileSystem files;
    FileUrl const folder("/z");
    files.addFolder("/z");
    CHECK(uniqueDestination(files, folder, "IMG_0001.jpg") == FileUrl("/z/IMG_0001.jpg"));
    files.addFile(FileUrl("/z/IMG_0001.jpg"));
    CHECK(uniqueDestination(files, folder, "IMG_0001.jpg") == FileUrl("/z/IMG_0001 2.jpg"));
    files.addFile(FileUrl("/z/IMG_0001 2.jpg"));
    files.addFile(FileUrl("/z/IMG_0001 4.jpg"));
    CHECK(uniqueDestination(files, folder, "IMG_0001.jpg") == FileUrl("/z/IMG_0001 3.jpg"));
    files.addFolder("/z/README");
    CHECK(uniqueDestination(files, folder, "README") == FileUrl("/z/README 2"));
}

TEST_CASE("the next free name lies behind the last one")
{
    FakeFileSystem files;
    files.addFile(FileUrl("/z/a.jpg"));
    files.addFile(FileUrl("/z/a 3.jpg"));
    FreeNames names(files, FileUrl("/z"), "a.jpg");
    CHECK(names.next() == FileUrl("/z/a 2.jpg"));
    CHECK(names.next() == FileUrl("/z/a 4.jpg"));
}

#include "posix/MountPoints.h"
#include <doctest/doctest.h>

using namespace pixelhain;

TEST_CASE("of all mounts those at a folder or below it are found")
{
    constexpr std::string_view list
        = "21 1 8:1 / / rw,relatime shared:1 - ext4 /dev/sda1 rw\n"
          "30 21 8:17 / /media/anna/KARTE rw shared:2 - vfat /dev/sdb1 rw\n"
          "31 21 8:33 /fotos /media/anna rw - ext4 /dev/sdc1 rw\n"
          "32 21 8:49 / /media/anna2 rw - ext4 /dev/sdd1 rw\n";
    CHECK(mountsWithin(list, FileUrl("/media/anna")) == "30 /media/anna/KARTE\n31 /media/anna\n");
    CHECK(mountsWithin(list, FileUrl("/media/anna/KARTE/DCIM")).empty());
}

TEST_CASE("places are told with the names that they have")
{
    CHECK(mountsWithin("30 21 8:17 / /m/EOS\\040DIGITAL rw - vfat x rw\n", FileUrl("/m"))
        == "30 /m/EOS DIGITAL\n");
    CHECK(mountsWithin("30 21 8:17 / /m/a\\134b\\0 rw - vfat x rw\n", FileUrl("/m"))
        == "30 /m/a\\b\\0\n");
}

TEST_CASE("lines that say nothing are passed over")
{
    CHECK(mountsWithin("", FileUrl("/")).empty());
    CHECK(mountsWithin("\n30\n30 21 8:17 /\n\n", FileUrl("/")).empty());
}

TEST_CASE("nothing has changed as long as nothing is mounted")
{
    MountPoints points(FileUrl("/"));
    CHECK(points.descriptor() >= 0);
    CHECK_FALSE(points.haveChanged());
}

#include "qt/ports/QtClipboard.h"
#include "qt/Wait.h"
#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QProcess>
#include <QUrl>
#include <doctest/doctest.h>
#include <vector>

using namespace pixelhain;

namespace {

std::vector<FileUrl> someFiles()
{
    return { FileUrl("/Fotos/Am See.jpg"), FileUrl("/Fotos/\xe4lter, 100%.jpg"),
        FileUrl("/Fotos/Bäume #2.png") };
}

QByteArray const firstUri = "file:///Fotos/Am%20See.jpg";
QByteArray const secondUri = "file:///Fotos/%E4lter,%20100%25.jpg";
QByteArray const thirdUri = "file:///Fotos/B%C3%A4ume%20%232.png";

// What another program reads from the X server's clipboard.
QByteArray readElsewhere(QString const& target)
{
    QProcess xclip;
    xclip.start(QStringLiteral("xclip"),
        { QStringLiteral("-o"), QStringLiteral("-selection"), QStringLiteral("clipboard"),
            QStringLiteral("-t"), target });
    REQUIRE(eventually([&] { return xclip.state() == QProcess::NotRunning; }));
    REQUIRE(xclip.exitCode() == 0);
    return xclip.readAllStandardOutput();
}

bool isOnX11()
{
    return QGuiApplication::platformName() == QStringLiteral("xcb");
}

} // namespace

TEST_CASE("files are offered in every form that file managers read, as copies")
{
    QtClipboard().setFiles(someFiles());
    auto const* data = QGuiApplication::clipboard()->mimeData();
    REQUIRE(data);
    CHECK(data->data(QStringLiteral("text/uri-list"))
        == firstUri + "\r\n" + secondUri + "\r\n" + thirdUri + "\r\n");
    auto const copied = "copy\n" + firstUri + "\n" + secondUri + "\n" + thirdUri;
    CHECK(data->data(QStringLiteral("x-special/gnome-copied-files")) == copied);
    CHECK(data->data(QStringLiteral("x-special/mate-copied-files")) == copied);
    CHECK(data->data(QStringLiteral("application/x-kde-cutselection")) == "0");
    CHECK(data->text()
        == QStringLiteral("/Fotos/Am See.jpg\n/Fotos/\uFFFDlter, 100%.jpg\n/Fotos/Bäume #2.png"));
    CHECK(data->urls().size() == 3);
    CHECK(data->urls().value(2).toLocalFile() == QStringLiteral("/Fotos/Bäume #2.png"));
    CHECK_FALSE(data->hasFormat(QStringLiteral("text/html")));
}

TEST_CASE("another program reads the very bytes that were offered")
{
    if (!isOnX11())
        return;
    QtClipboard().setFiles(someFiles());
    auto const targets = readElsewhere(QStringLiteral("TARGETS")).split('\n');
    for (char const* form :
        { "text/uri-list", "x-special/gnome-copied-files", "x-special/mate-copied-files",
            "application/x-kde-cutselection", "text/plain", "UTF8_STRING" })
        CHECK_MESSAGE(targets.contains(form), form);
    CHECK(readElsewhere(QStringLiteral("text/uri-list"))
        == firstUri + "\r\n" + secondUri + "\r\n" + thirdUri + "\r\n");
    CHECK(readElsewhere(QStringLiteral("x-special/gnome-copied-files"))
        == "copy\n" + firstUri + "\n" + secondUri + "\n" + thirdUri);
    CHECK(readElsewhere(QStringLiteral("application/x-kde-cutselection")) == "0");
    CHECK(readElsewhere(QStringLiteral("UTF8_STRING")).startsWith("/Fotos/Am See.jpg\n"));
}

TEST_CASE("ten thousand files cross over whole")
{
    if (!isOnX11())
        return;
    std::vector<FileUrl> files;
    for (int i = 0; i < 10'000; ++i)
        files.push_back(FileUrl("/Fotos/Ein recht langer Name/IMG_" + std::to_string(i) + ".jpg"));
    QtClipboard().setFiles(files);
    auto const read = readElsewhere(QStringLiteral("text/uri-list"));
    CHECK(read.count("\r\n") == 10'000);
    CHECK(read.endsWith("/IMG_9999.jpg\r\n"));
}

TEST_CASE("a newer offer takes the place of the older one")
{
    QtClipboard clipboard;
    clipboard.setFiles(someFiles());
    std::vector const one { FileUrl("/b/neu.jpg") };
    clipboard.setFiles(one);
    CHECK(QGuiApplication::clipboard()->mimeData()->data(QStringLiteral("text/uri-list"))
        == "file:///b/neu.jpg\r\n");
}

#include "codecs/XmpLens.h"
#include "codecs/PropertyLimits.h"
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

using Lens = std::optional<std::string>;

Lens inDescription(std::string const& attributes, std::string const& contents = "")
{
    return xmpLens(
        "<?xpacket begin='\uFEFF' id='W5M0MpCehiHzreSzNTczkc9d'?>\n"
        "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"><rdf:RDF><rdf:Description rdf:about=\"\"\n "
        + attributes + ">" + contents
        + "</rdf:Description></rdf:RDF></x:xmpmeta><?xpacket end='w'?>");
}

} // namespace

TEST_CASE("a lens stands in an attribute or in an element")
{
    CHECK(inDescription("aux:Lens=\"EF 50mm\"") == Lens("EF 50mm"));
    CHECK(inDescription("aux:Lens='EF 50mm'") == Lens("EF 50mm"));
    CHECK(inDescription("tiff:Make=\"A\"\n aux:Lens = \"EF 50mm\" aux:LensID=\"5\"")
        == Lens("EF 50mm"));
    CHECK(inDescription("", "<aux:Lens>EF 50mm</aux:Lens>") == Lens("EF 50mm"));
    CHECK(inDescription("", "<aux:Lens xml:lang=\"de\" >\n  EF 50mm\n</aux:Lens>")
        == Lens("EF 50mm"));
    CHECK(inDescription("", "<a/><b>1</b><aux:Lens\n>EF 50mm</aux:Lens>") == Lens("EF 50mm"));
}

TEST_CASE("other fields are not taken for the lens")
{
    CHECK(inDescription("aux:LensID=\"5\" aux:LensInfo=\"1\" exifaux:Lens=\"7\"") == Lens());
    CHECK(inDescription("", "<aux:LensID>5</aux:LensID>") == Lens());
    CHECK(inDescription("", "<dc:title>the aux:Lens=\"X\" attribute</dc:title>") == Lens());
    CHECK(inDescription("dc:title='aux:Lens=\"X\"'") == Lens());
    CHECK(inDescription("", "<!-- <aux:Lens>X</aux:Lens> -->") == Lens());
    CHECK(inDescription("", "<a><![CDATA[<aux:Lens>X</aux:Lens>]]></a>") == Lens());
    CHECK(inDescription("", "<aux:Lens/>X") == Lens());
    CHECK(inDescription("aux:Lens") == Lens());
    CHECK(inDescription("aux:Lens=5") == Lens());
}

TEST_CASE("entities are replaced by what they stand for")
{
    CHECK(inDescription("aux:Lens=\"A &amp; B &lt;&gt;&quot;&apos;\"") == Lens("A & B <>\"'"));
    CHECK(inDescription("", "<aux:Lens>20&#8211;40 &#xB5;m &#x1F4F7;</aux:Lens>")
        == Lens("20–40 µm 📷"));
    CHECK(inDescription("aux:Lens=\"a\nb\tc\"") == Lens("a b c"));
}

TEST_CASE("what is no entity stays as it is")
{
    for (std::string const text : { "&", "&;", "&nbsp;", "&#;", "&#x;", "&#xD800;", "&#0;",
             "&#x110000;", "&#99999999999;", "&#12a;", "&amp", "& amp;" }) {
        CAPTURE(text);
        CHECK(inDescription("aux:Lens=\"" + text + "\"") == Lens(text));
    }
}

TEST_CASE("packets that end too early have the lens that stands in front of that")
{
    std::string const packet = "<rdf:Description aux:Lens=\"EF 50mm\" b=\"1\"></rdf:Description>";
    for (std::size_t length = 0; length <= packet.size(); ++length) {
        auto const lens = xmpLens(packet.substr(0, length));
        CHECK(lens == (length >= packet.find(" b=") ? Lens("EF 50mm") : Lens()));
    }
    CHECK(xmpLens("<aux:Lens>EF 50mm") == Lens("EF 50mm"));
    CHECK(xmpLens("<a b='1\" <aux:Lens>X</aux:Lens>") == Lens());
    CHECK(xmpLens("<a b= <aux:Lens>X</aux:Lens>") == Lens("X"));
    CHECK(xmpLens("< = \"' <aux:Lens>X</aux:Lens>") == Lens("X"));
}

TEST_CASE("deep and endless packets are passed over once")
{
    std::string deep;
    for (int i = 0; i < 100'000; ++i)
        deep += "<a b='<' c>";
    CHECK(xmpLens(deep + "<aux:Lens>X</aux:Lens>") == Lens("X"));
    CHECK(xmpLens(std::string(1 << 20, '<')) == Lens());
    CHECK(xmpLens(std::string(1 << 20, '&')) == Lens());
    CHECK(xmpLens("<a " + std::string(1 << 20, '\'')) == Lens());
    CHECK(xmpLens("<a " + std::string(1 << 20, '=')) == Lens());
    auto const longest = xmpLens("<aux:Lens>" + std::string(1 << 20, 'x'));
    REQUIRE(longest);
    CHECK(longest->size() == PropertyLimits::text);
}

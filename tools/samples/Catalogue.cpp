#include "Catalogue.h"

namespace pixelhain {

std::vector<Sample> const& sampleCatalogue()
{
    using enum Scene;
    using enum SampleFormat;
    static std::vector<Sample> const samples {
        { "Strand bei Ahrenshoop 01.jpg", sea, { 1800, 1200 }, 2, jpegWithPreviews, 1,
            "2026:07:14 20:41:07" },
        { "Strand bei Ahrenshoop 02.jpg", sea, { 1500, 1000 }, 10, jpegWithPreviews, 1,
            "2026:07:15 11:02:33" },
        { "Strand bei Ahrenshoop 03.jpg", sea, { 1200, 1600 }, 8, jpegWithPreviews, 6,
            "2026:07:15 11:09:58" },
        { "Strand bei Ahrenshoop 10.jpg", sea, { 1500, 1000 }, 4, jpeg, 3, "2026:07:16 21:15:40" },
        { "Leuchtturm am Darßer Ort.jpg", lighthouse, { 1500, 1000 }, 7, jpegWithPreviews, 1,
            "2026:07:17 21:22:10" },
        { "Leuchtturm, hochkant.jpg", lighthouse, { 1000, 1500 }, 20, jpegWithPreviews, 8,
            "2026:07:17 12:30:00" },
        { "Panorama vom Deich.jpg", sea, { 3000, 1000 }, 23, jpeg, 1, "2026:07:18 05:12:51" },
        { "Segelboote.webp", sea, { 1500, 1000 }, 15, webp, 0, "" },

        { "Alpenüberquerung, Tag 1 – Aufbruch.jpg", mountains, { 1800, 1200 }, 5, jpegWithPreviews,
            1, "2025:08:29 07:48:12" },
        { "Alpenüberquerung, Tag 2 – Über den Grat.jpg", mountains, { 1500, 1000 }, 36,
            jpegWithPreviews, 1, "2025:08:30 13:20:45" },
        { "Alpenüberquerung, Tag 3 – Bergsee am Morgen.jpg", lake, { 1500, 1000 }, 33,
            jpegProgressive, 1, "2025:08:31 06:31:02" },
        { "Alpenüberquerung, Tag 3 – Bergsee am Abend.jpg", lake, { 1500, 1000 }, 47,
            jpegWithPreviews, 4, "2025:08:31 20:04:19" },
        { "Alpenüberquerung, Tag 4 – Wald im Nebel.jpg", forest, { 1200, 1600 }, 12,
            jpegWithPreviews, 6, "2025:09:01 08:15:27" },
        { "Alpenüberquerung, Tag 5 – Gipfel.jpg", mountains, { 1600, 1200 }, 22, jpegWithPreviews,
            2, "2025:09:02 11:55:00" },
        { "Karte der Höhen.png", marble, { 1200, 900 }, 12, png, 0, "" },

        { "Skyline 1.jpg", city, { 1500, 1000 }, 3, jpegWithPreviews, 1, "2026:02:11 22:40:00" },
        { "Städte bei Nacht/Skyline 2.jpg", city, { 1500, 1000 }, 4, jpegProgressive, 1,
            "2026:02:11 22:52:31" },
        { "Städte bei Nacht/Skyline 11.jpg", city, { 1600, 1200 }, 9, jpeg, 7,
            "2026:02:12 01:17:09" },
        { "Feuerwerk über der Bucht.jpg", fireworks, { 1800, 1200 }, 8, jpegWithPreviews, 1,
            "2026:01:01 00:00:21" },
        { "Städte bei Nacht/Silvester/Feuerwerk zum Schluss.jpg", fireworks, { 1200, 1600 }, 6,
            jpegWithPreviews, 8, "2026:01:01 00:19:44" },
        { "Städte bei Nacht/Silvester/Feuerwerk.bmp", fireworks, { 900, 600 }, 11, bmp, 0, "" },

        { "Margeriten.jpg", flowers, { 1500, 1000 }, 10, jpegWithPreviews, 1,
            "2026:06:03 10:12:00" },
        { "Ringelblumen.jpg", flowers, { 1600, 1200 }, 9, jpegWithPreviews, 1,
            "2026:06:03 10:20:16" },
        { "Rosa Blüten.jpg", flowers, { 1600, 1600 }, 7, jpegWithPreviews, 5,
            "2026:06:04 17:45:30" },
        { "Sonnenblumen.jpg", flowers, { 1500, 1000 }, 11, jpeg, 1, "2026:08:20 15:00:00" },
        { "Mohnfeld hinterm Zaun.jpg", poppies, { 1800, 1200 }, 10, jpegWithPreviews, 1,
            "2026:06:07 18:33:21" },
        { "Lavendel im Juli.jpg", poppies, { 1500, 1000 }, 11, jpegProgressive, 1,
            "2026:07:02 19:47:08" },
        { "Astern (alt).tif", flowers, { 1200, 900 }, 8, tiff, 0, "" },

        { "Nordlicht über Þingvellir.jpg", northernLights, { 1500, 1000 }, 5, jpegWithPreviews, 1,
            "2024:10:19 23:51:14" },
        { "Reisen/Island/Nordlicht, zweite Nacht.jpg", northernLights, { 1600, 1200 }, 9,
            jpegWithPreviews, 1, "2024:10:20 22:08:55" },
        { "Reisen/Wüste/Dünen am Mittag.jpg", dunes, { 1500, 1000 }, 20, jpegWithPreviews, 1,
            "2023:03:30 12:25:42" },
        { "Dünen am Abend.jpg", dunes, { 1500, 1000 }, 12, jpegWithPreviews, 1,
            "2023:03:30 18:55:03" },
        { "Reisen/Wüste/Dünen, 16 Bit.png", dunes, { 1200, 800 }, 8, pngSixteenBit, 0, "" },
        { "Ballonfahrt 1.jpg", balloons, { 1800, 1200 }, 15, jpegWithPreviews, 1,
            "2025:05:24 06:10:00" },
        { "Ballonfahrt 2.jpg", balloons, { 1500, 1000 }, 8, jpegWithPreviews, 1,
            "2025:05:24 06:34:48" },
        { "Ballonfahrt 3.jpg", balloons, { 1000, 1500 }, 21, jpegWithPreviews, 6,
            "2025:05:24 07:02:15" },

        { "Buchenwald.jpg", forest, { 1500, 1000 }, 11, jpegWithPreviews, 1,
            "2025:10:26 16:20:00" },
        { "Herbst/Buchenwald, schwarzweiß.jpg", forest, { 1500, 1000 }, 15, jpegGrey, 1,
            "2025:10:26 16:41:37" },
        { "Herbst/See im Dunst.tiff", lake, { 1200, 800 }, 18, tiffSixteenBit, 0, "" },

        { "Zeichen.png", emblem, { 1000, 1000 }, 1, pngTransparent, 0, "" },
        { "Entwürfe/Kreise.png", rings, { 1200, 900 }, 3, png, 0, "" },
        { "Entwürfe/Kreise, blau.gif", rings, { 900, 900 }, 7, gif, 0, "" },
        { "Farbspiel.gif", marble, { 480, 320 }, 6, gifAnimated, 0, "" },
        { "Entwürfe/Farbspiel.webp", marble, { 480, 320 }, 9, webpAnimated, 0, "" },
        { "Entwürfe/Marmor.webp", marble, { 1500, 1000 }, 4, webp, 0, "" },
    };
    return samples;
}

} // namespace pixelhain

#pragma once
#include "contactsheet/ContactSheetRenderer.h"
#include "images/ImageLoader.h"
#include "support/FakeBackground.h"
#include "support/FakeImageDecoder.h"
#include "support/FakeLoop.h"
#include "support/FakePdf.h"
#include "support/FakeWorkQueue.h"
#include "support/ImmediateQueue.h"
#include <string>
#include <vector>

namespace pixelhain {

/// What contact sheets are made with, and photos for them.
struct SheetDesk {
    FakeLoop loop;
    FakeBackground background;
    FakeImageDecoder decoder;
    FakeWorkQueue unused;
    ImageLoader loader { { loop, background, decoder, unused, unused } };
    ImmediateQueue queue;
    FakePdf pdf;
    ContactSheetPictures::Services services { loader, queue, 2, pdf };
    FileRun run;

    /// Photos "0.jpg", "1.jpg", … of 4 x 3 pixels.
    std::vector<PhotoItem> photos(std::size_t count)
    {
        std::vector<PhotoItem> all;
        for (std::size_t i = 0; i < count; ++i) {
            all.push_back({ FileUrl("/Bilder/" + std::to_string(i) + ".jpg") });
            decoder.put(all.back().url, {});
        }
        return all;
    }

    static ContactSheetJob job(std::vector<PhotoItem> photos)
    {
        ContactSheetJob job;
        job.photos = std::move(photos);
        job.options.title = "Urlaub";
        job.date = "16.11.2026";
        job.target = FileUrl("/Bilder/Kontaktabzug.pdf");
        return job;
    }

    ContactSheetResult render(ContactSheetJob const& job)
    {
        return renderContactSheet(services, job, run);
    }

    FakePdf::Written const& written() const { return *pdf.written.back(); }
};

} // namespace pixelhain

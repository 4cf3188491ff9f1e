#include "contactsheet/ContactSheetRenderer.h"
#include "base/Text.h"
#include "contactsheet/ContactSheetLayout.h"
#include "model/Messages.h"
#include <algorithm>
#include <exception>
#include <variant>

namespace pixelhain {

namespace {

/// One rendering under way.
class Rendering {
public:
    Rendering(ContactSheetPictures::Services const& services, ContactSheetJob const& job,
        ContactSheetLayout const& layout, PdfCanvas& canvas, FileRun& run)
        : job_(job)
        , layout_(layout)
        , canvas_(canvas)
        , run_(run)
        , pictures_(services, job.photos, layout.thumbnailPixels)
    {
    }

    ContactSheetResult draw()
    {
        for (std::size_t page = 0; page < layout_.pages; ++page) {
            drawHeader(page + 1);
            if (!drawPhotos(page) || run_.cancel.isSet())
                return { ContactSheetResult::End::cancelled };
            if (!canvas_.endPage())
                break;
            run_.handled = page + 1;
            if (job_.pageDone)
                job_.pageDone(page + 1, layout_.pages);
        }
        if (auto const problem = canvas_.finish())
            return { ContactSheetResult::End::failed, *problem };
        return {};
    }

private:
    void drawHeader(std::size_t page)
    {
        auto const info = contactSheetInfo(job_.photos.size(), job_.date, page, layout_.pages);
        auto const infoWidth = canvas_.textWidth(info, ContactSheetLayout::infoStyle);
        canvas_.drawText(contactSheetTitle(job_.options), ContactSheetLayout::titleStyle,
            layout_.titleAt(), layout_.titleWidth(infoWidth));
        canvas_.drawText(info, ContactSheetLayout::infoStyle, layout_.infoAt(infoWidth), infoWidth);
        canvas_.drawLine(layout_.ruleBegin(), layout_.ruleEnd(), ContactSheetLayout::ruleWidth,
            ContactSheetLayout::ruleWhite);
    }

    // False if cancelled.
    bool drawPhotos(std::size_t page)
    {
        auto const first = page * layout_.perPage;
        auto const count = std::min(layout_.perPage, job_.photos.size() - first);
        for (std::size_t index = 0; index < count; ++index) {
            if (run_.cancel.isSet())
                return false;
            drawPhoto(job_.photos[first + index], layout_.cellRect(index));
        }
        return true;
    }

    void drawPhoto(PhotoItem const& photo, PageRect const& cell)
    {
        canvas_.fill(cell, ContactSheetLayout::cellWhite);
        if (auto const picture = pictures_.next())
            canvas_.drawPicture(picture, ContactSheetLayout::pictureRect(cell, picture.size));
        else if (job_.withoutPicture)
            job_.withoutPicture(photo);
        if (job_.options.showNames)
            canvas_.drawLabel(
                displayText(photo.name()), layout_.labelStyle, ContactSheetLayout::labelBox(cell));
    }

    ContactSheetJob const& job_;
    ContactSheetLayout const& layout_;
    PdfCanvas& canvas_;
    FileRun& run_;
    ContactSheetPictures pictures_;
};

} // namespace

// Without memory a sheet fails like any other that cannot be written.
ContactSheetResult renderContactSheet(
    ContactSheetPictures::Services const& services, ContactSheetJob const& job, FileRun& run)
try {
    ContactSheetLayout const layout(job.options, job.photos.size(), job.options.page());
    auto begun = services.pdf.begin({ job.target, std::string(contactSheetTitle(job.options)),
        std::string(messages::productName), layout.page, job.agreed });
    if (auto const* const problem = std::get_if<WriteProblem>(&begun))
        return { ContactSheetResult::End::failed, *problem };
    auto& canvas = *std::get<std::unique_ptr<PdfCanvas>>(begun);
    return Rendering(services, job, layout, canvas, run).draw();
} catch (std::exception const&) {
    return { ContactSheetResult::End::failed };
}

} // namespace pixelhain

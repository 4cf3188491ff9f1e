#include "viewer/ViewerContainer.h"
#include "images/DecodeRules.h"
#include "model/BrowserModel.h"
#include "ports/Background.h"
#include <algorithm>
#include <utility>

namespace pixelhain {

namespace {

std::optional<PhotoItem> photoIn(BrowserModel const& model)
{
    auto const index = model.viewerIndex.get();
    if (!index || *index >= model.items->size())
        return std::nullopt;
    return (*model.items)[*index];
}

} // namespace

ViewerContainer::ViewerContainer(Services const& services, std::function<void()> photoChanged,
    ViewerImage::Changed pictureChanged)
    : services_(services)
    , photoChanged_(std::move(photoChanged))
    , pictureChanged_(std::move(pictureChanged))
    , pager_(services.loop)
{
}

ViewerContainer::~ViewerContainer() = default;

void ViewerContainer::modelChanged()
{
    auto const photo = photoIn(services_.model);
    item_ = photo;
    if (!photo) {
        if (!image_)
            return;
        metaLoad_.cancel();
        freePictures();
        chrome_.reset();
        photoChanged_();
        return;
    }
    if (!image_ || image_->item().url != photo->url)
        show(*photo);
}

// The metadata says whether the photo moves. It is nearly always there, read by the gallery's cell;
// where it is not, a file is not waited for: the photo begins as a still one.
void ViewerContainer::show(PhotoItem const& item)
{
    freePictures();
    chrome_.emplace(services_.model, item);
    metaLoad_.cancel();
    meta_ = services_.source.knownMeta(item.url);
    pager_.wait();
    makeImage(meta_ && meta_->isAnimated);
    if (!meta_)
        metaLoad_ = services_.source.loadMeta(
            item.url, [this](std::optional<ImageMeta> const& meta) { metaArrived(meta); });
    photoChanged_();
    image_->appear();
}

void ViewerContainer::makeImage(bool isAnimated)
{
    image_ = std::make_unique<ViewerImage>(services_.source, services_.loop, chrome_->item(),
        isAnimated, [this](std::chrono::milliseconds time) { pictureChanged_(time); });
}

void ViewerContainer::metaArrived(std::optional<ImageMeta> const& meta)
{
    meta_ = meta;
    if (!meta_)
        return;
    if (!meta_->isAnimated) {
        pictureChanged_({});
        return;
    }
    auto const still = image_->image();
    auto const standIn = image_->standIn();
    freePictures();
    makeImage(true);
    image_->keepStill(still, standIn);
    photoChanged_();
}

PixelSize ViewerContainer::standInShape() const
{
    if (!image_ || !image_->standIn())
        return {};
    return meta_ && meta_->size ? redrawnSize(*meta_->size, services_.source.displayPixelSize())
                                : image_->standIn()->image.size;
}

// Giving back the memory of a large picture takes longer than a frame.
void ViewerContainer::freePictures()
{
    if (!image_)
        return;
    services_.background.run(Priority::utility, [pictures = image_->takePictures()] {});
    image_.reset();
}

std::chrono::milliseconds ViewerContainer::transitionTime() const
{
    bool const blends = services_.model.viewerTransition == ViewerTransition::crossFade;
    return blends ? crossFadeTime : std::chrono::milliseconds(0);
}

std::vector<ViewerContainer::Layer> ViewerContainer::layers() const
{
    std::vector<Layer> all;
    for (auto const layer :
        { Layer::ground, Layer::picture, Layer::chrome, Layer::pauseLabel, Layer::infoPanel })
        if (shows(layer))
            all.push_back(layer);
    return all;
}

bool ViewerContainer::shows(Layer layer) const
{
    auto const& model = services_.model;
    if (!image_)
        return false;
    switch (layer) {
    case Layer::chrome:
        return !model.isSlideshow;
    case Layer::pauseLabel:
        return model.isSlideshow && model.isSlideshowPaused;
    case Layer::infoPanel:
        return model.showInfo;
    default:
        return true;
    }
}

void ViewerContainer::turnWheel(double angle)
{
    if (auto const step = pager_.turn(angle); step != 0)
        services_.model.stepViewer(step);
}

} // namespace pixelhain

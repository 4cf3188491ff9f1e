#pragma once
#include "qt/viewer/PicturePainter.h"
#include "viewer/AnimatedImageView.h"
#include "viewer/InfoPanel.h"
#include "viewer/ViewerContainer.h"
#include <QPointer>
#include <QWidget>
#include <functional>

class QVariantAnimation;

namespace pixelhain {

class FailureView;
class InfoPanelWidget;
class LargeSpinner;
class PauseLabel;
class PreparedPictures;
class ShareMenu;
class SideArrow;
class ViewerChromeWidget;
class ViewerImageWidget;

/// The viewer on the screen, over whatever its parent shows; hidden while no photo is open.
class ViewerWidget final : public QWidget {
public:
    struct Services {
        BrowserModel& model;
        ViewerSource& source;
        Background& background;
        MainLoop& loop;
        PreparedPictures& prepared;
        InfoLineSource infoLines;
        ShareMenu* share = nullptr; ///< none if null
        /// Makes what plays animations; null where none are played.
        std::function<std::unique_ptr<AnimatedImageView>(std::function<void()> changed)> animate {};
    };

    ViewerWidget(Services const& services, QWidget* parent);
    ~ViewerWidget() override;

    ViewerContainer& container() { return container_; }
    ViewerImageWidget& picture() { return *picture_; }
    ViewerChromeWidget& chrome() { return *chrome_; }
    SideArrow& arrow(ViewerChrome::Side side);

    /// Where it belongs, also while it is hidden: pictures are prepared for it then.
    void setPlace(QRect const& place);

    /// To be called after every change of the model.
    void modelChanged();

    /// Whether all there is to see of the photo is on the screen.
    bool isComplete() const;

    /// Called when nothing of what is beneath the viewer is to be seen any more.
    std::function<void()> opened;

    /// Called when the viewer is about to go: what was beneath it gets the keyboard.
    std::function<void()> closing;

protected:
    bool focusNextPrevChild(bool next) override;
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    bool event(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void photoChanged();
    void playAnimation();
    void showLayers();
    void showContent();
    void describePicture();
    void showArrows();
    void layOut();
    void open();
    void close();
    void fade(double from, double to);
    void perform(ViewerChrome::Action action, QPoint below);
    void share(QPoint below);

    Services services_;
    ViewerContainer container_;
    InfoPanel info_;
    std::unique_ptr<AnimatedImageView> animation_; ///< while the photo is one
    ViewerImageWidget* picture_;
    FailureView* failure_;
    LargeSpinner* spinner_;
    ViewerChromeWidget* chrome_;
    SideArrow* left_;
    SideArrow* right_;
    PauseLabel* pause_;
    InfoPanelWidget* infoPanel_;
    QPointer<QVariantAnimation> fading_;
    bool isOpen_ = false;
};

} // namespace pixelhain

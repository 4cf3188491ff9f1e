#pragma once
#include "app/HelpTopic.h"
#include <QListWidget>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace pixelhain {

/// The list of topics, one row each with symbol and title.
class HelpTopicList final : public QListWidget {
public:
    explicit HelpTopicList(QWidget* parent = nullptr);

    /// Fills the list and selects the topic with this id, if it is there. Tells nobody.
    void showTopics(
        std::vector<HelpTopic const*> const& topics, std::optional<std::string> const& id);

    /// The user selected a topic, or none.
    std::function<void(std::optional<std::string>)> selected;

protected:
    bool event(QEvent* event) override;

private:
    std::vector<HelpTopic const*> topics_;
};

} // namespace pixelhain

#include "sidebar/UnreportedFolders.h"
#include "ports/Background.h"
#include "ports/FileSystem.h"
#include "ports/FolderEvents.h"
#include "sidebar/FolderListing.h"
#include <algorithm>
#include <span>
#include <utility>

namespace pixelhain {

UnreportedFolders::UnreportedFolders(
    MainLoop& loop, Background& background, FolderEvents const* events, Asks asks)
    : loop_(loop)
    , background_(background)
    , events_(events)
    , asks_(std::move(asks))
{
    waitForNext();
}

void UnreportedFolders::waitForNext()
{
    next_ = loop_.after(interval, [this] { look(); });
}

void UnreportedFolders::forget()
{
    looks_.clear();
    looking_ = Task();
    waitForNext();
}

// The next look waits for this one: a drive that does not answer is asked once.
void UnreportedFolders::look()
{
    auto drawn = asks_.drawn();
    // Where all drives report, nothing is done but to wait.
    bool const isNeeded = std::ranges::any_of(drawn, [this](Known const& known) {
        auto const last = looks_.find(known.folder);
        return last == looks_.end() || !last->second.isReported;
    });
    if (!isNeeded)
        return waitForNext();
    auto const work
        = [tools = asks_.tools(), held = asks_.held, events = events_, drawn = std::move(drawn),
              before = looks_] { return lookAt(tools, events, drawn, before); };
    looking_ = runThen(background_, loop_, Priority::utility, work, [this](Answer answer) {
        looks_ = std::move(answer.looks);
        waitForNext();
        if (answer.changed)
            asks_.changed();
    });
}

UnreportedFolders::Answer UnreportedFolders::lookAt(FolderTools const& tools,
    FolderEvents const* events, std::vector<Known> const& drawn, Looks const& before)
{
    Answer answer;
    for (auto const& [folder, namesHash] : drawn) {
        auto const last = before.find(folder);
        bool const isKnown = last != before.end();
        Look now;
        now.isReported = isKnown ? last->second.isReported : events && events->areReported(folder);
        if (now.isReported) {
            answer.looks[folder] = now;
            continue;
        }
        auto const details = tools.files.details(std::span(&folder, 1)).front();
        now.modified = details ? details->modified : distantPast;
        now.exists = details.has_value();
        now.namesHash = namesHash;
        bool const isDated = !isKnown || last->second.modified != now.modified
            || last->second.exists != now.exists;
        if (isDated || last->second.again || last->second.namesHash != namesHash) {
            now.again = isDated;
            answer.changed
                = answer.changed || hashOfNames(subfolderURLs(tools, folder)) != namesHash;
        }
        answer.looks[folder] = now;
    }
    return answer;
}

} // namespace pixelhain

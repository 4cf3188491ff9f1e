#include "SampleFolder.h"

#include "Encoding.h"
#include <atomic>
#include <fstream>
#include <mutex>
#include <sstream>
#include <thread>

namespace pixelhain {

namespace {

namespace fs = std::filesystem;

constexpr auto stampName = ".pixelhain-samples";

/// Changes whenever the pictures do, so that a folder of an older program is drawn anew.
std::string stampOf(double scale, bool isComplete)
{
    std::ostringstream text;
    text << "samples 1, scale " << scale << (isComplete ? ", complete\n" : ", unfinished\n");
    return text.str();
}

std::string contentOf(fs::path const& file)
{
    std::ifstream stream(file, std::ios::binary);
    return { std::istreambuf_iterator<char>(stream), {} };
}

/// Under another name first: whoever looks sees the whole file or none.
bool writeWhole(fs::path const& file, void const* bytes, std::size_t count)
{
    auto name = std::string(".");
    name += file.filename().string();
    name += ".part";
    auto const part = file.parent_path() / name;
    std::ofstream stream(part, std::ios::binary | std::ios::trunc);
    stream.write(static_cast<char const*>(bytes), static_cast<std::streamsize>(count));
    stream.close();
    std::error_code error;
    if (stream)
        fs::rename(part, file, error);
    auto const isWritten = stream && !error;
    if (!isWritten)
        fs::remove(part, error);
    return isWritten;
}

bool writeWhole(fs::path const& file, std::string const& text)
{
    return writeWhole(file, text.data(), text.size());
}

class Run {
public:
    Run(fs::path folder, double scale, bool keepsPresent)
        : folder_(std::move(folder))
        , scale_(scale)
        , keepsPresent_(keepsPresent)
    {
    }

    std::optional<std::string> writeAll()
    {
        std::vector<std::jthread> workers;
        for (auto worker = 0u; worker < std::max(1u, std::thread::hardware_concurrency()); ++worker)
            workers.emplace_back([this] { work(); });
        workers.clear();
        return problem_;
    }

private:
    void work()
    {
        auto const& samples = sampleCatalogue();
        for (auto index = next_++; index < samples.size(); index = next_++)
            if (!write(samples[index])) {
                std::scoped_lock const guard(lock_);
                problem_ = "cannot write " + (folder_ / samples[index].path).string();
                next_ = samples.size();
            }
    }

    bool write(Sample const& sample)
    {
        auto const file = folder_ / sample.path;
        std::error_code error;
        if (keepsPresent_ && fs::exists(file, error))
            return true;
        fs::create_directories(file.parent_path(), error);
        auto const bytes = encodeSample(sample, scale_);
        return !error && !bytes.empty() && writeWhole(file, bytes.data(), bytes.size());
    }

    fs::path folder_;
    double scale_;
    bool keepsPresent_;
    std::atomic<std::size_t> next_ = 0;
    std::mutex lock_;
    std::optional<std::string> problem_;
};

} // namespace

std::optional<std::string> writeSamples(fs::path const& folder, double scale)
{
    auto const stamp = folder / stampName;
    auto const found = contentOf(stamp);
    if (found == stampOf(scale, true))
        return std::nullopt;
    std::error_code error;
    if (found.empty() && fs::exists(folder, error)
        && !(fs::is_directory(folder, error) && fs::is_empty(folder, error)))
        return folder.string() + " is there already and holds something else";
    fs::create_directories(folder, error);
    if (!writeWhole(stamp, stampOf(scale, false)))
        return "cannot write into " + folder.string();
    if (auto problem = Run(folder, scale, found == stampOf(scale, false)).writeAll())
        return problem;
    if (!writeWhole(stamp, stampOf(scale, true)))
        return "cannot write into " + folder.string();
    return std::nullopt;
}

} // namespace pixelhain

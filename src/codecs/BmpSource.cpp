#include "codecs/BmpSource.h"
#include "codecs/BmpDecoder.h"
#include "codecs/PhotoSource.h"

namespace pixelhain {

namespace {

constexpr std::size_t headBytes = std::size_t { 4 } << 10;

class BmpSource final : public PhotoSource {
public:
    explicit BmpSource(std::unique_ptr<ByteSource> bytes)
        : PhotoSource(std::move(bytes), headBytes)
        , header_(readBmpHeader(this->bytes()))
    {
        if (!header_)
            return;
        PhotoTraits traits;
        traits.size = header_->size;
        setTraits(traits);
    }

    [[nodiscard]] bool isReadable() const { return header_.has_value(); }
    [[nodiscard]] std::string_view typeIdentifier() const override { return "com.microsoft.bmp"; }

private:
    [[nodiscard]] std::optional<DecodedImage> decodeStored(int maxPixel) override
    {
        return decodeBmp(bytes(), *header_, maxPixel, profile());
    }

    [[nodiscard]] std::vector<std::uint8_t> readProfile() override
    {
        return profileAt(header_->profile);
    }

    std::optional<BmpHeader> header_;
};

} // namespace

std::unique_ptr<ImageSource> openBmp(std::unique_ptr<ByteSource> bytes)
{
    return openPhoto<BmpSource>(std::move(bytes));
}

} // namespace pixelhain

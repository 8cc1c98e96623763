#include "HSVNPatch.h"

#include "HSVNPlatformException.h"
#include "Internal/PatchReader.h"

#include <limits>
#include <utility>

namespace {

/// Made by the functions of its base class.
class ReadPatch : public HSVNPatch
{
  public:
    explicit ReadPatch(HSVNPatchSourceRef source) : HSVNPatch{std::move(source)} {}
};

/// What follows a name in a header, such as a tab and "(revision 1)".
std::string labelOf(std::string_view line)
{
    const auto tab = line.find('\t');
    return std::string{tab == std::string_view::npos ? std::string_view{} : line.substr(tab)};
}

/// Writes one item without Git's headers.
class UnifiedItem
{
  public:
    UnifiedItem(const HSVNPatchSource& source, const HSVNPatchItem& item, const HSVNContentsReceiver& receiver)
        : _source{source}, _item{item}, _receiver{receiver}
    {
    }

    /// @return false when the receiver stops
    bool write()
    {
        const auto header = _item.header();
        const auto end = header.offset() + header.size();
        HSVNPatchLines lines{_source, header.offset(), end};
        for (HSVNPatchRawLine line; _goesOn && lines.next(line);) {
            writeHeaderLine(line);
        }
        if (_item.isBinary()) {
            hand("Cannot display: file marked as a binary type.\n");
        }
        const auto& text = _item.text();
        writeBody(end, text.offset() + text.size());
        return _goesOn;
    }

  private:
    void hand(std::string_view bytes) { _goesOn = _goesOn && _receiver(bytes); }
    void hand(std::uint64_t offset, std::uint64_t end)
    {
        HSVNPatchText{std::shared_ptr<const HSVNPatchSource>{std::shared_ptr<void>{}, &_source}, offset, end - offset}
            .read([&](std::string_view bytes) {
                hand(bytes);
                return _goesOn;
            });
    }

    void writeHeaderLine(const HSVNPatchRawLine& line)
    {
        const auto text = line.header();
        if (text.starts_with("--- ") || text.starts_with("+++ ")) {
            hand(std::string{text.substr(0, 4)} + _item.path() + labelOf(text));
            hand(line.offset + line.size, line.end);
        } else if (text.starts_with("Index: ") || text.starts_with("====")) {
            hand(line.offset, line.end);
        }
    }

    /// What follows, but for the contents of a binary file.
    void writeBody(std::uint64_t offset, std::uint64_t end)
    {
        if (!_item.isBinary()) {
            hand(offset, end);
            return;
        }
        HSVNPatchLines lines{_source, offset, end};
        bool isContents = true;
        for (HSVNPatchRawLine line; isContents && lines.next(line);) {
            // Contents are lines without a blank, after "literal NUMBER" or an empty one.
            isContents =
                line.size == 0 || line.text.starts_with("literal ") || line.text.find(' ') == std::string::npos;
            offset = isContents ? line.end : offset;
        }
        if (offset < end) {
            hand("\n");
            hand(offset, end);
        }
    }

    const HSVNPatchSource& _source;
    const HSVNPatchItem& _item;
    const HSVNContentsReceiver& _receiver;
    bool _goesOn = true;
};

} // namespace

HSVNPatchRef HSVNPatch::patchAtPath(const HSVNTarget& path)
{
    return std::make_shared<const ReadPatch>(HSVNOpenPatch(path.text()).source);
}

HSVNPatchRef HSVNPatch::patchWithText(std::string text)
{
    return std::make_shared<const ReadPatch>(HSVNPatchSourceOfText(std::move(text)));
}

void HSVNPatch::readItems(const HSVNReceiver<const HSVNPatchItem&>& receiver,
                          const HSVNPatchReadingChoices& choices) const
{
    HSVNAssertParameter(receiver != nullptr, "receiver != nil");
    HSVNPatchReader reader{*_source, choices.ignoreWhitespace};
    for (HSVNPatchFacts facts; reader.next(facts);) {
        if (!receiver(HSVNPatchItem{_source, facts, choices.ignoreWhitespace})) {
            return;
        }
    }
}

std::vector<HSVNPatchItem> HSVNPatch::items(const HSVNPatchReadingChoices& choices) const
{
    std::vector<HSVNPatchItem> items;
    readItems([&](const HSVNPatchItem& item) { items.push_back(item); }, choices);
    return items;
}

void HSVNPatch::write(const HSVNContentsReceiver& receiver) const
{
    HSVNPatchText{_source, 0, _source->size()}.read(receiver);
}

void HSVNPatch::writeUnified(const HSVNContentsReceiver& receiver) const
{
    HSVNAssertParameter(receiver != nullptr, "receiver != nil");
    readItems([&](const HSVNPatchItem& item) {
        if (item.hasGitHeader()) {
            return UnifiedItem{*_source, item, receiver}.write();
        }
        bool goesOn = true;
        item.text().read([&](std::string_view bytes) { return goesOn = receiver(bytes); });
        return goesOn;
    });
}

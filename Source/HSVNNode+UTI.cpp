#include "HSVNNode.h"

#include "HSVNException.h"
#include "HSVNLocalPath.h"
#include "HSVNPropertyNames.h"
#include "HSVNRevisionSpec.h"
#include "HSVNTypeRegistry.h"
#include "Internal/Operation.h"
#include "Internal/Text.h"

#include <filesystem>
#include <system_error>

namespace {

bool isDirectoryOnDisk(const HSVNPath& path)
{
    std::error_code error;
    return std::filesystem::is_directory(path.string(), error);
}

/// Whether a node of unknown kind is a folder: a local path or a local file tells it without the repository.
bool isFolder(const HSVNPathRef& path, const HSVNRevisionRef& revision, const HSVNLocalPathRef& localFile,
              const HSVNContextRef& context)
{
    if (dynamic_cast<const HSVNLocalPath*>(path.get())) {
        return isDirectoryOnDisk(*path);
    }
    if (localFile) {
        return isDirectoryOnDisk(*localFile);
    }
    return HSVNNode::isDirectoryAtPath(path, HSVNRevisionSpec::revisionWithRevision(revision), context);
}

/// The property svn:mime-type; an item that is not versioned has none.
std::optional<std::string> MIMETypeProperty(const HSVNPathRef& path, const HSVNRevisionRef& revision,
                                            const HSVNContextRef& context)
{
    try {
        return HSVNNode::propertyWithName(HSVNPropertyMIMEType, path, HSVNRevisionSpec::revisionWithRevision(revision),
                                          context);
    } catch (const HSVNNotWorkingCopyException&) {
        return std::nullopt;
    } catch (const HSVNNoSuchEntryException&) {
        return std::nullopt;
    } catch (const HSVNUnversionedResourceException&) {
        return std::nullopt;
    }
}

std::optional<std::string> MIMETypeOfNode(const HSVNPathRef& path, const HSVNRevisionRef& revision,
                                          const HSVNLocalPathRef& localFile, const HSVNContextRef& context)
{
    if (!dynamic_cast<const HSVNLocalPath*>(path.get())) {
        return localFile ? HSVNNode::MIMETypeForNodeAtPath(localFile, context) : std::nullopt;
    }
    auto type = MIMETypeProperty(path, revision, context);
    return type ? type : HSVNNode::MIMETypeForNodeAtPath(path, context);
}

/// The type that the name's extension stands for; nil when it stands for none in particular.
std::optional<std::string> typeOfExtension(const HSVNPath& path)
{
    const auto extension = path.extension();
    if (!extension || extension->empty()) {
        return std::nullopt;
    }
    auto type = HSVNTypeRegistry::sharedRegistry().preferredIdentifierForTag(HSVNTypeTagClass::filenameExtension,
                                                                             *extension, HSVNTypeItem);
    return type == HSVNTypeItem || HSVNNode::isDynamicUTI(type) ? std::nullopt : std::optional{std::move(type)};
}

std::string typeOfMIMEType(const std::optional<std::string>& mimeType)
{
    if (!mimeType) {
        return HSVNTypeText;
    }
    auto type = HSVNTypeRegistry::sharedRegistry().preferredIdentifierForTag(HSVNTypeTagClass::MIMEType, *mimeType,
                                                                             HSVNTypeData);
    if (HSVNNode::isDynamicUTI(type)) {
        if (HSVNNode::isTextMIMEType(mimeType)) {
            return HSVNTypeText;
        }
        if (mimeType == "application/octet-stream") {
            return HSVNTypeData;
        }
    }
    return type;
}

} // namespace

std::string HSVNNode::UTIForNodeAtPath(const HSVNPathRef& path, const HSVNRevisionRef& revision,
                                       const HSVNContextRef& context)
{
    return UTIForNodeAtPath(path, revision, nullptr, HSVNNodeKindUnknown, context);
}

std::string HSVNNode::UTIForNodeAtPath(const HSVNPathRef& path, const HSVNRevisionRef& revision,
                                       const HSVNLocalPathRef& localFile, HSVNNodeKind nodeKind,
                                       const HSVNContextRef& context)
{
    HSVNAssertParameter(path != nullptr, "path != nil");
    HSVNAssertParameter(revision != nullptr, "revision != nil");
    HSVNAssertParameter(context != nullptr, "context != nil");
    if (nodeKind == HSVNNodeKindDirectory) {
        return HSVNTypeDirectory;
    }
    if (auto type = typeOfExtension(*path)) {
        return *std::move(type);
    }
    if (nodeKind == HSVNNodeKindUnknown && isFolder(path, revision, localFile, context)) {
        return HSVNTypeDirectory;
    }
    return typeOfMIMEType(MIMETypeOfNode(path, revision, localFile, context));
}

std::optional<std::string> HSVNNode::MIMETypeForNodeAtPath(const HSVNPathRef& path, const HSVNContextRef& context)
{
    HSVNOperation operation{
        context, "HSVNNode", "MIMETypeForNodeAtPath:withContext:", {{"path", path}, {"context", context}}};
    const char* type = nullptr;
    operation.check(operation->io_detect_mimetype(&type, operation.cString(path->string()), operation.pool()));
    return HSVNTextOrNil(type);
}

bool HSVNNode::isTextMIMEType(const std::optional<std::string>& mimeType)
{
    HSVNAssertParameter(mimeType.has_value(), "mimeType != nil");
    return mimeType->starts_with("text/");
}

bool HSVNNode::isDynamicUTI(const std::optional<std::string>& identifier)
{
    return identifier && identifier->starts_with("dyn");
}

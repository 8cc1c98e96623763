// The conditions on what operations are given: each is tested before anything else is done, in its order.

#include "HSVNAddOptions.h"
#include "HSVNCheckOutOptions.h"
#include "HSVNClient.h"
#include "HSVNCommitOptions.h"
#include "HSVNCopyOptions.h"
#include "HSVNDeleteOptions.h"
#include "HSVNDirectory.h"
#include "HSVNExportOptions.h"
#include "HSVNImportOptions.h"
#include "HSVNLocalPath.h"
#include "HSVNLockOptions.h"
#include "HSVNMergeOptions.h"
#include "HSVNMoveOptions.h"
#include "HSVNNode.h"
#include "HSVNResolveOptions.h"
#include "HSVNRevertOptions.h"
#include "HSVNRevision.h"
#include "HSVNURL.h"
#include "HSVNUnlockOptions.h"
#include "HSVNUpdateOptions.h"
#include "ReasonOf.h"

#include <functional>
#include <gtest/gtest.h>

namespace {

/// What is given in order; each call breaks one condition, and none that is tested earlier.
class OperationConditions : public testing::Test
{
  protected:
    using Node = HSVNNode;
    using Directory = HSVNDirectory;

    static void expect(const std::vector<std::pair<const char*, std::function<void()>>>& cases)
    {
        for (std::size_t index = 0; index < cases.size(); ++index) {
            EXPECT_EQ(reasonOf<HSVNAssertionException>(cases[index].second),
                      std::string{"Invalid parameter not satisfying: "} + cases[index].first)
                << index;
        }
    }

    const HSVNContextRef context = std::make_shared<HSVNClient>();
    const HSVNPathRef path = HSVNLocalPath::pathWithString("/none");
    const HSVNURLRef url = HSVNURL::URLWithString("file:///none");
    const HSVNRevisionRef head = HSVNRevision::HEAD();
};

} // namespace

TEST_F(OperationConditions, AreTestedInOrderByDeleteMoveAndCopy)
{
    const auto copying = HSVNCopyOptions::defaults();
    const auto deletion = HSVNDeleteOptions::defaults();
    const auto moving = HSVNMoveOptions::defaults();
    expect({
        {"options != nil", [&] { Node::deleteNodes({}, nullptr, nullptr); }},
        {"context != nil", [&] { Node::deleteNodes({}, deletion, nullptr); }},
        {"options != nil", [&] { Node::deleteRepositoryNodesAtURLs({}, nullptr, nullptr); }},
        {"context != nil", [&] { Node::deleteRepositoryNodesAtURLs({}, deletion, nullptr); }},
        {"options != nil", [&] { Node::deleteWorkingCopyNodesAtPaths({}, nullptr, nullptr); }},
        {"context != nil", [&] { Node::deleteWorkingCopyNodesAtPaths({}, deletion, nullptr); }},
        {"path != nil", [&] { Node::deleteNodes({nullptr}, deletion, context); }},
        {"path != nil",
         [&] {
             Node::deleteNodes({url, nullptr}, deletion, context);
         }},
        {"sourcePath != nil", [&] { Node::moveNodeAtPath(nullptr, nullptr, nullptr, nullptr); }},
        {"destPath != nil", [&] { Node::moveNodeAtPath(path, nullptr, nullptr, nullptr); }},
        {"options != nil", [&] { Node::moveNodeAtPath(path, path, nullptr, nullptr); }},
        {"context != nil", [&] { Node::moveNodeAtPath(path, path, moving, nullptr); }},
        {"sourcePath != nil", [&] { Node::copyNodeAtPath(nullptr, nullptr, nullptr, nullptr); }},
        {"destPath != nil", [&] { Node::copyNodeAtPath(path, nullptr, nullptr, nullptr); }},
        {"options != nil", [&] { Node::copyNodeAtPath(path, path, nullptr, nullptr); }},
        {"context != nil", [&] { Node::copyNodeAtPath(path, path, copying, nullptr); }},
        {"context != nil", [&] { Node::moveNodes({}, {}, true, nullptr, nullptr, nullptr, nullptr); }},
        {"[sourcePaths count] == [destPaths count]",
         [&] { Node::moveNodes({path}, {}, true, copying, nullptr, nullptr, context); }},
        {"options != nil", [&] { Node::moveNodes({path}, {path}, true, nullptr, nullptr, nullptr, context); }},
        {"[options isKindOfClass:[HSVNCopyOptions class]]",
         [&] { Node::moveNodes({path}, {path}, true, moving, nullptr, nullptr, context); }},
        {"[options isKindOfClass:[HSVNMoveOptions class]]",
         [&] { Node::moveNodes({path}, {path}, false, copying, nullptr, nullptr, context); }},
        {"sourcePath != nil", [&] { Node::moveNodes({nullptr}, {path}, true, copying, nullptr, nullptr, context); }},
        {"path != nil", [&] { Node::deleteNodeAtPath(nullptr, nullptr, nullptr); }},
        {"source != nil", [&] { Node::deleteNodeAtPath(path, nullptr, nullptr); }},
        {"context != nil", [&] { Node::deleteNodeAtPath(path, path, nullptr); }},
        {"[source isKindOfClass:[HSVNLocalPath class]]", [&] { Node::deleteNodeAtPath(path, url, context); }},
    });
}

TEST_F(OperationConditions, AreTestedInOrderByVerbsThatRead)
{
    expect({
        {"revision != nil", [&] { context->list("/none", nullptr, {}, {}); }},
        {"receiver != nil", [&] { context->list("/none", HSVNRevisionSpec::HEAD(), {}, {}); }},
        {"receiver != nil",
         [&] {
             context->log("/none", {.ranges = {{nullptr, head}}}, {});
         }},
        {"revision != nil",
         [&] {
             context->log("/none", {.ranges = {{nullptr, head}}});
         }},
        {"revision != nil",
         [&] {
             context->log("/none", {.ranges = {{head, nullptr}}});
         }},
        {"receiver != nil", [&] { context->status("/none", {}, {}); }},
    });
}

TEST_F(OperationConditions, AreTestedInOrderByImportExportAndMerge)
{
    const auto exporting = HSVNExportOptions::defaults();
    const auto importing = HSVNImportOptions::defaults();
    const auto merging = HSVNMergeOptions::defaults();
    expect({
        {"path != nil", [&] { Node::importNodeAtPath(nullptr, nullptr, nullptr, nullptr); }},
        {"url != nil", [&] { Node::importNodeAtPath(path, nullptr, nullptr, nullptr); }},
        {"options != nil", [&] { Node::importNodeAtPath(path, url, nullptr, nullptr); }},
        {"context != nil", [&] { Node::importNodeAtPath(path, url, importing, nullptr); }},
        {"toPath != nil", [&] { Node::exportNodeAtPath(nullptr, nullptr, nullptr, nullptr); }},
        {"options != nil", [&] { Node::exportNodeAtPath(path, path, nullptr, nullptr); }},
        {"fromPath != nil", [&] { Node::exportNodeAtPath(nullptr, path, exporting, context); }},
        {"context != nil", [&] { Node::exportNodeAtPath(path, path, exporting, nullptr); }},
        {"path1 != nil", [&] { Node::mergeNodeAtPath(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr); }},
        {"revision1 != nil",
         [&] { Node::mergeNodeAtPath(path, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr); }},
        {"path2 != nil", [&] { Node::mergeNodeAtPath(path, head, nullptr, nullptr, nullptr, nullptr, nullptr); }},
        {"revision2 != nil", [&] { Node::mergeNodeAtPath(path, head, path, nullptr, nullptr, nullptr, nullptr); }},
        {"workingCopyPath != nil", [&] { Node::mergeNodeAtPath(path, head, path, head, nullptr, nullptr, nullptr); }},
        {"options != nil", [&] { Node::mergeNodeAtPath(path, head, path, head, path, nullptr, nullptr); }},
        {"context != nil", [&] { Node::mergeNodeAtPath(path, head, path, head, path, merging, nullptr); }},
    });
}

TEST_F(OperationConditions, AreTestedInOrderByChangesOfAWorkingCopy)
{
    const auto adding = HSVNAddOptions::defaults();
    const auto checkingOut = HSVNCheckOutOptions::defaults();
    const auto resolving = HSVNResolveOptions::defaults();
    const auto reverting = HSVNRevertOptions::defaults();
    const auto updating = HSVNUpdateOptions::defaults();
    const auto unknownDepth = HSVNCheckOutOptions::defaults();
    unknownDepth->setDepth(HSVNDepthUnknown);
    const auto excluded = HSVNCheckOutOptions::defaults();
    excluded->setDepth(HSVNDepthExclude);
    expect({
        {"path != nil", [&] { Node::add(nullptr, nullptr, nullptr); }},
        {"path != nil", [&] { Node::add(nullptr, nullptr); }},
        {"options != nil", [&] { Node::add(path, nullptr, nullptr); }},
        {"context != nil", [&] { Node::add(path, adding, nullptr); }},
        {"options != nil", [&] { Node::revertNodes({path}, nullptr, nullptr); }},
        {"context != nil", [&] { Node::revertNodes({path}, reverting, nullptr); }},
        {"path != nil", [&] { Node::resolveNodeAtPath(nullptr, nullptr, nullptr); }},
        {"options != nil", [&] { Node::resolveNodeAtPath(path, nullptr, nullptr); }},
        {"context != nil", [&] { Node::resolveNodeAtPath(path, resolving, nullptr); }},
        {"revision != nil", [&] { Node::updateNodes({path}, nullptr, nullptr, nullptr); }},
        {"options != nil", [&] { Node::updateNodes({path}, head, nullptr, nullptr); }},
        {"context != nil", [&] { Node::updateNodes({path}, head, updating, nullptr); }},
        {"options != nil", [&] { Node::commitChangesToNodes({}, nullptr, nullptr); }},
        {"url != nil", [&] { Directory::checkoutDirectoryAtURL(nullptr, nullptr, nullptr, nullptr); }},
        {"path != nil", [&] { Directory::checkoutDirectoryAtURL(url, nullptr, nullptr, nullptr); }},
        {"options != nil", [&] { Directory::checkoutDirectoryAtURL(url, path, nullptr, nullptr); }},
        {"[options depth] != HSVNDepthUnknown",
         [&] { Directory::checkoutDirectoryAtURL(url, path, unknownDepth, nullptr); }},
        {"[options depth] != HSVNDepthExclude",
         [&] { Directory::checkoutDirectoryAtURL(url, path, excluded, nullptr); }},
        {"context != nil", [&] { Directory::checkoutDirectoryAtURL(url, path, checkingOut, nullptr); }},
        {"path != nil", [&] { Node::revertNodes({nullptr}, reverting, context); }},
    });
    EXPECT_THROW(Node::commitChangesToNodes({path}, HSVNCommitOptions::defaults(), nullptr),
                 HSVNInvalidArgumentException);
}

TEST_F(OperationConditions, AreTestedInOrderByLockAndUnlock)
{
    const auto locking = HSVNLockOptions::defaults();
    const auto unlocking = HSVNUnlockOptions::defaults();
    expect({
        {"options != nil", [&] { Node::lockNodes({}, {}, nullptr, nullptr); }},
        {"context != nil", [&] { Node::lockNodes({}, {}, locking, nullptr); }},
        {"path != nil", [&] { Node::lockNodes({nullptr}, {}, locking, context); }},
        {"options != nil", [&] { Node::unlockNodes({}, nullptr, nullptr); }},
        {"context != nil", [&] { Node::unlockNodes({}, unlocking, nullptr); }},
    });
}

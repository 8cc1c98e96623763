#include "HSVNException.h"
#include "HSVNFile.h"
#include "HSVNKeyedArchiver.h"
#include "HSVNKeyedUnarchiver.h"
#include "HSVNLock.h"
#include "HSVNNotification.h"
#include "HSVNRevisionSpec.h"
#include "HSVNStatus.h"
#include "HSVNURL.h"
#include "Internal/Subversion.h"
#include "SequentialCoder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>

using testing::HasSubstr;

namespace {

constexpr HSVNArchiveFormat formats[] = {HSVNArchiveFormatJSON, HSVNArchiveFormatCBOR};

HSVNLockRef sampleLock()
{
    return std::make_shared<HSVNLock>(HSVNPath::pathWithString("/trunk/\xC3\xA4.c"), "opaquelocktoken:1", "harry",
                                      std::nullopt, HSVNDate{1'795'250'220'123'456}, HSVNDate{-5});
}

/// As Subversion's records tell of one that was never dated.
HSVNLockRef undatedLock()
{
    svn_lock_t lock{};
    lock.path = "/trunk/file";
    lock.token = "opaquelocktoken:2";
    lock.expiration_date = 1'795'250'220'123'456;
    return std::make_shared<HSVNLock>(&lock);
}

HSVNPlatformExceptionRef sampleException(const char* className)
{
    const HSVNUserInfo cause{{"message", "inner"}, {"status", std::int64_t{155'004}}};
    return HSVNExceptionClass::named(className)->make(
        "outer", {{"status", std::int64_t{200'015}}, {"cause", std::make_shared<const HSVNUserInfo>(cause)}});
}

HSVNNotificationRef sampleNotification()
{
    auto notification = HSVNNotification::notificationWithAction(HSVNNotifyActionUpdateFailed);
    notification->setPath("a/b");
    notification->setPathPrefix("a");
    notification->setURL(HSVNURL::URLWithString("svn+ssh://host/repository/a%20b"));
    notification->setAlternatePath(HSVNPath::pathWithString("/c"));
    notification->setNodeKind(HSVNNodeKindDirectory);
    notification->setLock(sampleLock());
    notification->setError(sampleException("HSVNOperationCancelledException"));
    notification->setRevision(12);
    notification->setContentState(2);
    notification->setPropertyState(3);
    notification->setLockState(4);
    notification->setPropertyName("svn:ignore");
    notification->setMimeType("text/plain");
    notification->setChangelistName("list");
    notification->setMergeRange(HSVNRevision::revisionWithNumber(6), HSVNRevision::revisionWithNumber(4));
    notification->setHunk(HSVNPatchHunk{1, 2, 3, 4, 5, 6});
    return notification;
}

std::string archive(const std::string& root)
{
    return R"({"$archiver":"HSVNKeyedArchiver","$version":1,"root":)" + root + "}";
}

/// The archive of a folder with its status, every key in its order.
std::string directoryArchive(const std::string& furtherKeys = {})
{
    return archive(
        R"({"$class":"HSVNDirectory","name":"d","path":{"$class":"HSVNLocalPath","path":"/w/d"},)"
        R"("location":{"$class":"HSVNLocalPath","path":"/w"},"url":{"$class":"HSVNURL","string":"svn://h/r/d"},)"
        R"("size":18446744073709551615,"revision":3,"date":{"$date":7000000},"author":"sally","hasProperties":true,)"
        R"("status":{"$class":"HSVNStatus","textStatus":64,"propertyStatus":4,"repositoryTextStatus":2,)"
        R"("repositoryPropertyStatus":2,"lastChangedRevision":3,"lastChangedDate":{"$date":7000000},)"
        R"("lastChangedAuthor":"sally","locked":true,"copied":false,"switched":true,"deleted":false,"absent":false,)"
        R"("hasProperties":true,"hasPropertyModifications":false,"outOfDateLastCommitRevision":-1,"schedule":1,)"
        R"("copyFromURL":{"$class":"HSVNURL","string":"svn://h/r/c"},"copyFromRevision":2,"checksum":"d41d8c"},)"
        R"("aggregateChildStatus":64,"aggregateReposChildStatus":2)" +
        furtherKeys + "}");
}

/// A node with every field that archives have of few nodes only.
std::string listedNodeArchive()
{
    return archive(R"({"$class":"HSVNFile","name":"dir/f","path":{"$class":"HSVNURL","string":"svn://h/r/dir/f"},)"
                   R"("size":0,"revision":3,"date":{"$date":7000000},"hasProperties":false,)"
                   R"("exactDate":{"$date":7000009},"sizeIsUnknown":true,"externalParentURL":"svn://h/r",)"
                   R"("externalTarget":"dir"})");
}

std::vector<HSVNArchivableRef> sampleObjects()
{
    return {HSVNRevision::HEAD(),
            HSVNRevision::BASE(),
            HSVNRevision::UNSPECIFIED(),
            HSVNRevision::MINE(),
            HSVNRevision::revisionWithNumber(2'147'483'647),
            std::make_shared<HSVNNumberedRevision>(-7),
            HSVNRevision::revisionAtDate(HSVNDate{1'795'250'220'123'456}),
            HSVNRevisionSpec::pegRevisionWithNumber(7),
            HSVNMutableRevisionSpec::revisionWithRevision(HSVNRevision::HEAD(), HSVNRevision::MINE()),
            HSVNPath::pathWithString("/trunk/file"),
            HSVNURL::URLWithString("https://user@host:8443/a%20b"),
            sampleLock(),
            undatedLock(),
            HSVNNotification::notification(),
            sampleNotification(),
            HSVNKeyedUnarchiver::unarchiveObjectWithData(directoryArchive())};
}

/// An application's coder, which notes what it is asked to store.
struct KeyRecorder : HSVNCoder
{
    std::string keys;

    bool allowsKeyedCoding() const override { return true; }
    bool containsValueForKey(std::string_view) const override { return false; }
    void encodeObject(const HSVNArchivableRef&, std::string_view key) override { note(key); }
    void encodeString(const std::optional<std::string>&, std::string_view key) override { note(key); }
    void encodeDate(const std::optional<HSVNDate>&, std::string_view key) override { note(key); }
    void encodeInteger(std::int64_t, std::string_view key) override { note(key); }
    void encodeUnsigned(std::uint64_t, std::string_view key) override { note(key); }
    void encodeBool(bool, std::string_view key) override { note(key); }
    void encodeException(const HSVNPlatformExceptionRef&, std::string_view key) override { note(key); }

  private:
    void note(std::string_view key) { keys.append(keys.empty() ? "" : " ").append(key); }
};

std::string keysOf(const HSVNArchivable& object)
{
    KeyRecorder recorder;
    object.encodeWithCoder(&recorder);
    return recorder.keys;
}

/// The reason for which data is refused; the decoded object's description when it is not.
std::string refusal(std::string_view data)
{
    try {
        return "accepted: " + HSVNKeyedUnarchiver::unarchiveObjectWithData(data)->description();
    } catch (const HSVNInvalidArgumentException& exception) {
        return exception.reason();
    }
}

} // namespace

TEST(Archive, RestoresEveryClassWithAllItsFieldsInBothFormats)
{
    for (const auto& object : sampleObjects()) {
        for (const auto format : formats) {
            const auto data = HSVNKeyedArchiver::archivedDataWithRootObject(object, format);
            const auto restored = HSVNKeyedUnarchiver::unarchiveObjectWithData(data);
            EXPECT_EQ(restored->className(), object->className());
            EXPECT_EQ(HSVNKeyedArchiver::archivedDataWithRootObject(restored, format), data);
        }
    }
}

TEST(Archive, WritesTheKeysOfEachClassInTheirOrder)
{
    EXPECT_EQ(HSVNKeyedArchiver::archivedDataWithRootObject(sampleLock()),
              archive(R"({"$class":"HSVNLock","creationDate":{"$date":1795250220123456},"expirationDate":{"$date":-5},)"
                      R"("owner":"harry","path":{"$class":"HSVNLocalPath","path":"/trunk/ä.c"},)"
                      R"("token":"opaquelocktoken:1"})"));
    EXPECT_EQ(HSVNKeyedArchiver::archivedDataWithRootObject(undatedLock()),
              archive(R"({"$class":"HSVNLock","expirationDate":{"$date":1795250220000000},)"
                      R"("path":{"$class":"HSVNLocalPath","path":"/trunk/file"},"token":"opaquelocktoken:2",)"
                      R"("exactExpirationDate":{"$date":1795250220123456}})"));
    const auto spec = HSVNRevisionSpec::revisionWithRevision(HSVNRevision::revisionWithNumber(5), HSVNRevision::BASE());
    EXPECT_EQ(HSVNKeyedArchiver::archivedDataWithRootObject(spec),
              archive(R"({"$class":"HSVNRevisionSpec","operativeRevision":{"$class":"HSVNNumberedRevision",)"
                      R"("number":5},"pegRevision":{"$class":"HSVNRelativeRevision","kind":5,"description":"BASE"}})"));
    for (const auto& text : {directoryArchive(), directoryArchive(R"(,"treeConflictCount":3)")}) {
        EXPECT_EQ(HSVNKeyedArchiver::archivedDataWithRootObject(HSVNKeyedUnarchiver::unarchiveObjectWithData(text)),
                  text);
    }
    const auto node = HSVNKeyedUnarchiver::unarchiveObjectOfClass<HSVNFile>(listedNodeArchive());
    EXPECT_EQ(node->date(), HSVNDate{7'000'000});
    EXPECT_EQ(node->exactDate(), HSVNDate{7'000'009});
    EXPECT_EQ(HSVNKeyedArchiver::archivedDataWithRootObject(node->copy()), listedNodeArchive());
}

TEST(Archive, AsksForNoFurtherKeysWhereNothingIsThere)
{
    EXPECT_EQ(keysOf(HSVNNotification{}),
              "path alternatePath action nodeKind lock error revision contentState propertyState lockState pathPrefix "
              "url propertyName");
    EXPECT_EQ(keysOf(HSVNFile{}), "name path location url size revision date author lock hasProperties status");
    EXPECT_THAT(keysOf(HSVNStatus{}), testing::EndsWith(" checksum repositoryLock"));
    EXPECT_THAT(keysOf(*sampleNotification()), HasSubstr(" mimeType changelistName mergeStart mergeEnd hunk"));
    KeyRecorder recorder;
    EXPECT_THAT([&] { HSVNURL{&recorder}; }, testing::ThrowsMessage<HSVNInvalidArgumentException>(
                                                 testing::StrEq("The coder does not supply decodeString")));
}

TEST(Archive, RestoresANotificationFieldByField)
{
    const auto original = sampleNotification();
    const auto data = HSVNKeyedArchiver::archivedDataWithRootObject(original, HSVNArchiveFormatCBOR);
    const auto restored = HSVNKeyedUnarchiver::unarchiveObjectOfClass<HSVNNotification>(data);
    EXPECT_EQ(restored->path(), "a/b");
    EXPECT_EQ(restored->pathPrefix(), "a");
    EXPECT_EQ(restored->URL()->string(), "svn+ssh://host/repository/a%20b");
    EXPECT_EQ(restored->alternatePath()->string(), "/c");
    EXPECT_EQ(restored->action(), HSVNNotifyActionUpdateFailed);
    EXPECT_EQ(restored->nodeKind(), HSVNNodeKindDirectory);
    EXPECT_TRUE(restored->lock()->isEqual(original->lock()));
    EXPECT_EQ(restored->lock()->expirationDate(), HSVNDate{-5});
    EXPECT_EQ(restored->revision(), 12);
    EXPECT_EQ(restored->contentState(), 2);
    EXPECT_EQ(restored->propertyState(), 3);
    EXPECT_EQ(restored->lockState(), 4);
    EXPECT_EQ(restored->propertyName(), "svn:ignore");
    EXPECT_EQ(restored->mimeType(), "text/plain");
    EXPECT_EQ(restored->changelistName(), "list");
    EXPECT_EQ(restored->mergeStart()->number(), 6);
    EXPECT_EQ(restored->mergeEnd()->number(), 4);
    EXPECT_EQ(restored->hunk(), (HSVNPatchHunk{1, 2, 3, 4, 5, 6}));
    const auto* cause = restored->error()->userInfo().at("cause").dictionary();
    ASSERT_TRUE(cause);
    EXPECT_EQ(*cause->at("status").number(), 155'004);
    EXPECT_THROW(restored->error()->raise(), HSVNOperationCancelledException);
}

TEST(Archive, RestoresExceptionsAsTheirConcreteClass)
{
    const HSVNPlatformExceptionRef exceptions[] = {HSVNPlatformException("Name", "why", {{"key", "text"}}).copy(),
                                                   HSVNAssertionException("why").copy(),
                                                   HSVNInvalidArgumentException("why").copy(),
                                                   HSVNGenericException("why").copy(),
                                                   HSVNInternalInconsistencyException("why").copy(),
                                                   HSVNException("why").copy(),
                                                   sampleException("HSVNEntryLockedException"),
                                                   sampleException("HSVNHostUnreachableException")};
    for (const auto& exception : exceptions) {
        HSVNKeyedArchiver archiver;
        archiver.encodeException(exception, "error");
        const auto restored = HSVNKeyedUnarchiver{archiver.encodedData()}.decodeException("error");
        EXPECT_EQ(restored->className(), exception->className());
        EXPECT_EQ(restored->name(), exception->name());
        EXPECT_EQ(restored->reason(), exception->reason());
        EXPECT_EQ(restored->userInfo().size(), exception->userInfo().size());
    }
}

TEST(Archive, KeepsTheWholeRangeOfNumbers)
{
    for (const auto format : formats) {
        HSVNKeyedArchiver archiver{format};
        archiver.encodeInteger(std::numeric_limits<std::int64_t>::min(), "smallest");
        archiver.encodeUnsigned(std::numeric_limits<std::uint64_t>::max(), "largest");
        archiver.encodeBool(true, "flag");
        HSVNKeyedUnarchiver unarchiver{archiver.encodedData()};
        EXPECT_EQ(unarchiver.decodeInteger("smallest"), std::numeric_limits<std::int64_t>::min());
        EXPECT_EQ(unarchiver.decodeUnsigned("largest"), std::numeric_limits<std::uint64_t>::max());
        EXPECT_TRUE(unarchiver.decodeBool("flag"));
        EXPECT_THROW(unarchiver.decodeInteger("largest"), HSVNInvalidArgumentException);
        EXPECT_THROW(unarchiver.decodeUnsigned("smallest"), HSVNInvalidArgumentException);
        EXPECT_THROW(unarchiver.decodeInt32("smallest"), HSVNInvalidArgumentException);
        EXPECT_EQ(unarchiver.decodeInteger("absent"), 0);
        EXPECT_EQ(unarchiver.decodeString("absent"), std::nullopt);
    }
}

TEST(Archive, RefusesCodersWithoutKeys)
{
    SequentialCoder coder;
    for (const auto& object : sampleObjects()) {
        EXPECT_THROW(object->encodeWithCoder(&coder), HSVNInvalidArgumentException) << object->className();
        EXPECT_THROW(object->encodeWithCoder(nullptr), HSVNAssertionException) << object->className();
    }
    const auto reasonOf = [](const auto& make) {
        try {
            make();
        } catch (const HSVNPlatformException& exception) {
            return exception.reason();
        }
        return std::string{"no exception"};
    };
    EXPECT_EQ(reasonOf([&] { HSVNLock{&coder}; }), "Keyed unarchiver required");
    EXPECT_EQ(reasonOf([&] { HSVNNotification{&coder}; }), "Keyed unarchiver required");
    EXPECT_EQ(reasonOf([&] { HSVNMineRevision{&coder}; }), "Keyed unarchiver required");
    EXPECT_EQ(reasonOf([&] { HSVNRevisionSpec{&coder}; }), "Keyed archiver required");
    EXPECT_EQ(reasonOf([] { HSVNHeadRevision{static_cast<HSVNCoder*>(nullptr)}; }),
              "Invalid parameter not satisfying: decoder != nil");
}

TEST(Archive, ADecoderOfOneDirectionRefusesTheOther)
{
    HSVNKeyedArchiver archiver;
    EXPECT_THROW(archiver.decodeString("key"), HSVNInvalidArgumentException);
    HSVNKeyedUnarchiver unarchiver{archiver.encodedData()};
    EXPECT_THROW(unarchiver.encodeString("text", "key"), HSVNInvalidArgumentException);
}

/// Claims to be a class that archives know, and holds itself.
class SelfHolder : public HSVNArchivable, public std::enable_shared_from_this<SelfHolder>
{
  public:
    explicit SelfHolder(std::string className) : _className{std::move(className)} {}
    std::string className() const override { return _className; }
    void encodeWithCoder(HSVNCoder* encoder) const override { encoder->encodeObject(shared_from_this(), "held"); }

  private:
    std::string _className;
};

TEST(Archive, TheArchiverRefusesWhatCouldNotBeReadBack)
{
    const auto reasonOf = [](const auto& encode) {
        HSVNKeyedArchiver archiver;
        try {
            encode(archiver);
        } catch (const HSVNInvalidArgumentException& exception) {
            return exception.reason();
        }
        return "accepted: " + archiver.encodedData();
    };
    EXPECT_THAT(reasonOf([](auto& a) { a.encodeObject(std::make_shared<SelfHolder>("HSVNLock"), "cycle"); }),
                HasSubstr("holds itself"));
    EXPECT_THAT(reasonOf([](auto& a) { a.encodeObject(std::make_shared<SelfHolder>("Unheard"), "key"); }),
                HasSubstr("\"Unheard\""));
    EXPECT_THAT(reasonOf([](auto& a) { a.encodeString("\xFF", "key"); }), HasSubstr("\"key\" is not UTF-8"));
    EXPECT_THAT(reasonOf([](auto& a) { a.encodeString(std::string("a\0b", 3), "key"); }), HasSubstr("NUL"));
    EXPECT_THAT(reasonOf([](auto& a) { a.encodeInteger(1, "$class"); }), HasSubstr("\"$class\" cannot be a key"));
    EXPECT_THAT(reasonOf([](auto& a) {
                    a.encodeInteger(1, "key");
                    a.encodeBool(true, "key");
                }),
                HasSubstr("\"key\" is used twice"));
    EXPECT_THROW(HSVNKeyedArchiver::archivedDataWithRootObject(nullptr), HSVNAssertionException);
}

struct HostileArchive
{
    std::string data;
    std::string reason; ///< a part of it

    friend std::ostream& operator<<(std::ostream& stream, const HostileArchive& hostile)
    {
        return stream << hostile.data.size() << " bytes: " << hostile.data.substr(0, 100);
    }
};

class HostileArchives : public testing::TestWithParam<HostileArchive>
{
};

TEST_P(HostileArchives, AreRefusedWithAReasonThatNamesTheFault)
{
    EXPECT_THAT(refusal(GetParam().data), HasSubstr(GetParam().reason));
}

INSTANTIATE_TEST_SUITE_P(
    Values, HostileArchives,
    testing::Values(
        HostileArchive{archive("5"), "\"root\" is not an object with a class"},
        HostileArchive{archive("{}"), "\"root\" is not an object with a class"},
        HostileArchive{archive("null"), "\"root\" is missing"},
        HostileArchive{archive(R"({"$class":5})"), "\"root\" is not an object with a class"},
        HostileArchive{archive(R"({"$class":"HSVNClient"})"), "\"root\" has an unknown class: \"HSVNClient\""},
        HostileArchive{archive(R"({"$class":"HSVNRevision"})"), "unknown class"},
        HostileArchive{archive(R"({"$class":"HSVNNumberedRevision"})"),
                       "\"number\" of HSVNNumberedRevision is missing"},
        HostileArchive{archive(R"({"$class":"HSVNNumberedRevision","number":"5"})"),
                       "\"number\" of HSVNNumberedRevision is not a whole number"},
        HostileArchive{archive(R"({"$class":"HSVNNumberedRevision","number":5.0})"), "not a whole number"},
        HostileArchive{archive(R"({"$class":"HSVNNumberedRevision","number":99999999999999999999})"),
                       "not a whole number of 64 bits"},
        HostileArchive{archive(R"({"$class":"HSVNNumberedRevision","number":2147483648})"),
                       "\"number\" of HSVNNumberedRevision does not fit 32 bits"},
        HostileArchive{archive(R"({"$class":"HSVNRelativeRevision","kind":2,"description":"x"})"), "kind"},
        HostileArchive{archive(R"({"$class":"HSVNHeadRevision","kind":5,"description":"HEAD"})"), "\"kind\""},
        HostileArchive{archive(R"({"$class":"HSVNRevisionAtDate","date":5})"), "\"date\" of HSVNRevisionAtDate"},
        HostileArchive{archive(R"({"$class":"HSVNRevisionAtDate","date":{"$date":1e300}})"), "\"date\""},
        HostileArchive{archive(R"({"$class":"HSVNRevisionSpec","operativeRevision":{"$class":"HSVNMineRevision"}})"),
                       "\"pegRevision\" of HSVNRevisionSpec is missing"},
        HostileArchive{archive(R"({"$class":"HSVNRevisionSpec","operativeRevision":{"$class":"HSVNLocalPath",)"
                               R"("path":"/a"}})"),
                       "\"operativeRevision\" of HSVNRevisionSpec has an unexpected class: HSVNLocalPath"},
        HostileArchive{archive(R"({"$class":"HSVNLocalPath","path":""})"), "HSVNLocalPath"},
        HostileArchive{archive(R"({"$class":"HSVNURL","string":"no scheme"})"),
                       "Archived HSVNURL is not valid: URL does not contain a scheme"},
        HostileArchive{archive(R"({"$class":"HSVNLock","path":{"$class":"HSVNLocalPath","path":"/a"},"token":true})"),
                       "\"token\" of HSVNLock is not a text"},
        HostileArchive{archive(R"({"$class":"HSVNNotification","error":"boom"})"), "\"error\" of HSVNNotification"},
        HostileArchive{archive(R"({"$class":"HSVNNotification","error":{"$exception":"std::exception","name":"n",)"
                               R"("reason":"r"}})"),
                       "\"error\" is an exception of an unknown class: \"std::exception\""},
        HostileArchive{archive(R"({"$class":"HSVNNotification","error":{"$exception":"HSVNException","name":"n"}})"),
                       "\"reason\" is missing"},
        HostileArchive{archive(R"({"$class":"HSVNNotification","error":{"$exception":"HSVNException","name":"n",)"
                               R"("reason":"r","userInfo":{"status":true}}})"),
                       "\"status\" is not a whole number"}));

INSTANTIATE_TEST_SUITE_P(
    Structures, HostileArchives,
    testing::Values(HostileArchive{"", "neither a JSON nor a CBOR"}, HostileArchive{"  \n", "neither"},
                    HostileArchive{"[]", "neither"}, HostileArchive{"garbage", "neither"},
                    HostileArchive{"{", "damaged at byte"}, HostileArchive{"{}", "not an archive"},
                    HostileArchive{R"({"$archiver":"Another","$version":1})", "not an archive"},
                    HostileArchive{R"({"$archiver":"HSVNKeyedArchiver","$version":2})", "not of version 1"},
                    HostileArchive{archive("{}") + "x", "damaged"},
                    HostileArchive{archive(R"([{"$class":"HSVNMineRevision"}])"), "array"},
                    HostileArchive{archive(R"({"$class":"HSVNMineRevision","$class":"HSVNLock"})"), "\"$class\" twice"},
                    HostileArchive{archive("{\"key\":\"\xC3\x28\"}"), "damaged"},
                    HostileArchive{archive(R"({"key":"\ud800"})"), "damaged"},
                    HostileArchive{archive(R"({"key":"a\u0000b"})"), "NUL"},
                    HostileArchive{archive("1e999"), "damaged"}, HostileArchive{std::string(100'000, '{'), "damaged"}));

namespace {

std::string repeated(const std::string& text, std::size_t count)
{
    std::string all;
    for (; count > 0; --count) {
        all += text;
    }
    return all;
}

std::string bytes(std::initializer_list<int> values) { return {values.begin(), values.end()}; }

} // namespace

INSTANTIATE_TEST_SUITE_P(
    DeepJSON, HostileArchives,
    testing::Values(HostileArchive{repeated("{\"a\":", 1'000'000), "nested deeper than 256 levels"},
                    HostileArchive{archive(repeated("{\"a\":", 255) + "1" + repeated("}", 255)),
                                   "an object with a class"},
                    HostileArchive{archive(repeated("{\"a\":", 256) + "1" + repeated("}", 256)), "nested deeper"}));

INSTANTIATE_TEST_SUITE_P(
    CBOR, HostileArchives,
    testing::Values(HostileArchive{bytes({0xA1}), "cut off at byte 1"}, HostileArchive{bytes({0xA0}), "not an archive"},
                    HostileArchive{bytes({0xA0, 0xA0}), "damaged"},
                    HostileArchive{bytes({0xBB, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}), "cut off"},
                    HostileArchive{bytes({0xA1, 0x7B, 0x7F, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}), "cut off"},
                    HostileArchive{bytes({0xBF, 0xFF}), "damaged at byte 0"},
                    HostileArchive{bytes({0xA1}) + std::string(1'000'000, '\x7F'), "damaged at byte 1"},
                    HostileArchive{repeated("\xA1\x61\x61", 1'000'000), "nested deeper"},
                    HostileArchive{bytes({0xA1, 0x61, 'a', 0x41, 'b'}), "kind of value"},
                    HostileArchive{bytes({0xA1, 0x61, 'a', 0xC1, 0x01}), "kind of value"},
                    HostileArchive{bytes({0xA1, 0x61, 'a', 0x81, 0x01}), "kind of value"},
                    HostileArchive{bytes({0xA1, 0x01, 0x01}), "damaged"},
                    HostileArchive{bytes({0xA1, 0x61, 0xFF, 0x01}), "not UTF-8"},
                    HostileArchive{bytes({0xA2, 0x61, 'a', 0x01, 0x61, 'a', 0x02}), "\"a\" twice"},
                    HostileArchive{bytes({0xA1, 0x61, 'a', 0x3B, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}),
                                   "does not fit 64 bits"},
                    HostileArchive{bytes({0xA1, 0x61, 'a', 0x3B, 0x80, 0, 0, 0, 0, 0, 0, 0}), "does not fit 64 bits"}));

namespace {

/// Changes a text at random: bytes set, removed, doubled or moved, the end cut off.
std::string mutated(std::string text, std::mt19937& random)
{
    for (auto changes = 1 + random() % 3; changes > 0 && !text.empty(); --changes) {
        const std::size_t at = random() % text.size();
        const std::size_t length = 1 + random() % 8;
        switch (random() % 5) {
        case 0:
            text[at] = static_cast<char>(random());
            break;
        case 1:
            text.erase(at, length);
            break;
        case 2:
            text.insert(at, text.substr(random() % text.size(), length));
            break;
        case 3:
            text[at] = static_cast<char>(text[at] ^ static_cast<char>(1U << random() % 8));
            break;
        default:
            text.resize(at);
        }
    }
    return text;
}

} // namespace

TEST(Archive, RandomDamageIsRefusedOrGivesAWholeObject)
{
    std::mt19937 random{20'261'121};
    int refused = 0;
    int accepted = 0;
    for (const auto& object : sampleObjects()) {
        for (const auto format : formats) {
            const auto data = HSVNKeyedArchiver::archivedDataWithRootObject(object, format);
            for (int round = 0; round < 300; ++round) {
                const auto damaged = mutated(data, random);
                std::shared_ptr<HSVNArchivable> restored;
                try {
                    restored = HSVNKeyedUnarchiver::unarchiveObjectWithData(damaged);
                } catch (const HSVNInvalidArgumentException& exception) {
                    ++refused;
                    EXPECT_FALSE(exception.reason().empty());
                    continue;
                }
                ++accepted;
                EXPECT_NO_THROW(restored->description());
                const auto again = HSVNKeyedArchiver::archivedDataWithRootObject(restored, format);
                EXPECT_EQ(HSVNKeyedArchiver::archivedDataWithRootObject(
                              HSVNKeyedUnarchiver::unarchiveObjectWithData(again), format),
                          again);
            }
        }
    }
    EXPECT_GT(refused, 4000);
    EXPECT_GT(accepted, 100);
}

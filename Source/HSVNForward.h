#pragma once

// The library's classes by name, and how objects of them are held: what a header needs that only passes them on.

#include <memory>

class HSVNCertificate;
class HSVNClient;
class HSVNClientDelegate;
class HSVNCommitItem;
class HSVNContext;
class HSVNCredentials;
class HSVNDate;
class HSVNDirectory;
class HSVNFile;
class HSVNLocalPath;
class HSVNLock;
class HSVNLogItem;
class HSVNNode;
class HSVNNotification;
class HSVNPath;
class HSVNPathWithRevision;
class HSVNRepository;
class HSVNRepositoryInfo;
class HSVNRevision;
class HSVNRevisionRange;
class HSVNRevisionSpec;
class HSVNStatus;
class HSVNURL;
class HSVNVersion;

// Values: never changed once made.
using HSVNCertificateRef = std::shared_ptr<const HSVNCertificate>;
using HSVNLocalPathRef = std::shared_ptr<const HSVNLocalPath>;
using HSVNLockRef = std::shared_ptr<const HSVNLock>;
using HSVNNotificationRef = std::shared_ptr<const HSVNNotification>;
using HSVNPathRef = std::shared_ptr<const HSVNPath>;
using HSVNPathWithRevisionRef = std::shared_ptr<const HSVNPathWithRevision>;
using HSVNRepositoryInfoRef = std::shared_ptr<const HSVNRepositoryInfo>;
using HSVNRevisionRangeRef = std::shared_ptr<const HSVNRevisionRange>;
using HSVNRevisionRef = std::shared_ptr<const HSVNRevision>;
using HSVNRevisionSpecRef = std::shared_ptr<const HSVNRevisionSpec>;
using HSVNURLRef = std::shared_ptr<const HSVNURL>;

// Objects with setters.
using HSVNClientRef = std::shared_ptr<HSVNClient>;
using HSVNCommitItemRef = std::shared_ptr<HSVNCommitItem>;
using HSVNContextRef = std::shared_ptr<HSVNContext>;
using HSVNCredentialsRef = std::shared_ptr<HSVNCredentials>;
using HSVNDirectoryRef = std::shared_ptr<HSVNDirectory>;
using HSVNFileRef = std::shared_ptr<HSVNFile>;
using HSVNLogItemRef = std::shared_ptr<HSVNLogItem>;
using HSVNNodeRef = std::shared_ptr<HSVNNode>;
using HSVNRepositoryRef = std::shared_ptr<HSVNRepository>;
using HSVNStatusRef = std::shared_ptr<HSVNStatus>;

#pragma once

namespace Vs {

/// How an operation of the cloud drive ended, and each request to any service.
/// SkyvaultUtilities::getErrorString gives the drive's text. The numbers are settled: transcripts and other
/// add-ins may have kept them.
enum class CloudErrorState : int {
    Success = 0,
    Cancelled = 1,       ///< By the person.
    Disabled = 2,        ///< By the option or by the edition of the program.
    LoginFailed = 3,     ///< Nobody is signed in.
    Unreachable = 4,     ///< No connection, or one that broke off or stalled.
    LogoutFailed = 5,    ///< Credentials could not be taken out of the keyring.
    TooManyRequests = 6, ///< The server asks to wait longer than is bearable.
    NotOnDisk = 7,       ///< The document has no file yet.
    NotFound = 8,
    Forbidden = 9,     ///< This user may not.
    Unauthorized = 10, ///< The server no longer takes the credentials.
    Changed = 11,      ///< Another client wrote a newer version; nothing was written.
    Locked = 12,       ///< Another client holds a lock.
    NoFolders = 13,    ///< Folders of the drive or of its cache could not be made.
    DriveFull = 14,
    OutsideCache = 15, ///< A path was given that doesn't lie in the cloud cache.
    ServerError = 16,  ///< An answer of 500 and above.
    BadAnswer = 17,    ///< Not what the protocol allows, or beyond all measure.
    Certificate = 18,  ///< Not to be trusted; the detail has its fingerprint.
    Redirected = 19,   ///< To another host or to an unprotected address.
    BadName = 20,      ///< A name that can be none of a file.
    CacheFailed = 21,  ///< The local copy or the index could not be read or written.
    NotKept = 22,      ///< What the server keeps afterwards isn't what was sent.
    Unsupported = 23   ///< The server has no such function.
};

} // namespace Vs

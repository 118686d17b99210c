#pragma once

namespace Vs {

/// How an operation of the cloud drive, or a request to any service, ended. SkyvaultUtilities::getErrorString
/// gives the drive's text. The numbers are fixed: transcripts and other add-ins may have stored them.
enum class CloudErrorState : int {
    Success = 0,
    Cancelled = 1,       ///< By the user.
    Disabled = 2,        ///< By the option or by the program's edition.
    LoginFailed = 3,     ///< Nobody is signed in.
    Unreachable = 4,     ///< No connection, or one that broke off or stalled.
    LogoutFailed = 5,    ///< Credentials could not be taken out of the keyring.
    TooManyRequests = 6, ///< The server asks for a longer wait than is acceptable.
    NotOnDisk = 7,       ///< The document has no file yet.
    NotFound = 8,
    Forbidden = 9,     ///< This user isn't allowed to.
    Unauthorized = 10, ///< The server no longer accepts the credentials.
    Changed = 11,      ///< Another client wrote a newer version; nothing was written.
    Locked = 12,       ///< Another client holds a lock.
    NoFolders = 13,    ///< Folders of the drive or of its cache could not be made.
    DriveFull = 14,
    OutsideCache = 15, ///< The given path isn't in the cloud cache.
    ServerError = 16,  ///< A status of 500 or above.
    BadAnswer = 17,    ///< A violation of the protocol, or far too large.
    Certificate = 18,  ///< Not trusted; the detail contains its fingerprint.
    Redirected = 19,   ///< To another host or to an unprotected address.
    BadName = 20,      ///< Not a valid file name.
    CacheFailed = 21,  ///< The local copy or the index could not be read or written.
    NotKept = 22,      ///< What the server has stored isn't what was sent.
    Unsupported = 23   ///< The server doesn't support the function.
};

} // namespace Vs

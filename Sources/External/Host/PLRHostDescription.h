#pragma once

#include <pelorino/PLRExport.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

/// A width and a height, in points or in pixels.
struct PLRSize {
  double width = 0;
  double height = 0;
};

/// The main screen.
struct PLRScreen {
  PLRSize bounds;        ///< In points.
  double scale = 1;      ///< Pixels for each point.
  PLRSize nativeBounds;  ///< In pixels.
};

/// What the application and its system are. Every field is optional. What is absent is taken from
/// the process and the operating system, or is not reported. Texts are UTF-8; bad bytes are
/// replaced, except in paths and in the proxy.
struct PLRHostDescription {
  std::optional<std::string> applicationName;  ///< Default: the executable's file name.
  std::optional<std::string> applicationVersion;
  std::optional<std::string> applicationBuildVersion;
  std::optional<std::string> bundleIdentifier;
  std::optional<std::string> bundleFolder;  ///< The folder of the application's own files.
  std::optional<std::string> receiptFile;

  /// The folder in which the library makes its own. Default: a folder of the application's name in
  /// `$XDG_DATA_HOME` or `~/.local/share`.
  std::optional<std::string> supportDirectory;

  /// The file of the device identifier. Keep it outside the support directory: it should survive
  /// when that is deleted. Default: `pelorino.keys` in a folder of the application's name in
  /// `$XDG_STATE_HOME` or `~/.local/state`.
  std::optional<std::string> keyStoreFile;

  /// A PEM file of the certificate authorities that are trusted; the system's are then not used.
  /// Default: `$SSL_CERT_FILE`, or the system's. If the file cannot be read, every request fails
  /// with a log line.
  std::optional<std::string> certificateAuthorityFile;

  /// The URL of the proxy to the backend, such as "http://user:pw@host:3128" or
  /// "socks5h://host:1080". HTTPS stays encrypted up to the backend. Empty: no proxy. Default: the
  /// environment (`https_proxy`, `all_proxy`, `no_proxy`).
  std::optional<std::string> proxy;

  std::optional<std::vector<std::string>> preferredLanguages;  ///< Such as "en-GB", best first.
  std::optional<std::string> region;                           ///< Such as "GB".

  /// Identifies this device to this vendor. Empty: the device has none. Default: a hash of the
  /// machine's id and the application, the same at every launch.
  std::optional<std::string> vendorIdentifier;
  std::optional<std::string> advertisingIdentifier;
  std::optional<int> trackingAuthorization;  ///< 0 not determined, 3 authorised; others: refused.

  std::optional<PLRScreen> screen;
  std::optional<std::string> machine;  ///< Default: `uname`.

  /// Default: `uname`. If it is set and below 12.2, introductory prices and discounts of store
  /// products are not reported.
  std::optional<std::string> systemVersion;

  /// Returns true when the device has been tampered with. Called once for each start, on the
  /// library's main thread. The start waits for the answer, for 20 seconds at most. It must not
  /// call the library. An exception is logged and counts as false.
  std::function<bool()> integrityProbe;
};

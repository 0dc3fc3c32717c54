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
  double scale = 1;      ///< Pixels a point.
  PLRSize nativeBounds;  ///< In pixels.
};

/// What the application and its system are. Every field may be left out: what is absent is taken
/// from the process and the operating system.
struct PLRHostDescription {
  std::optional<std::string> applicationName;  ///< Default: the executable's file name.
  std::optional<std::string> applicationVersion;
  std::optional<std::string> applicationBuildVersion;
  std::optional<std::string> bundleIdentifier;
  std::optional<std::string> bundleFolder;  ///< Where the application's own files lie.
  std::optional<std::string> receiptFile;

  /// Where the library makes its folder. Default: `$XDG_DATA_HOME` or `~/.local/share`, then the
  /// application's name.
  std::optional<std::string> supportDirectory;

  /// Holds the device identifier, outside the support directory so that it outlives it. Default:
  /// below `$XDG_STATE_HOME` or `~/.local/state`.
  std::optional<std::string> keyStoreFile;

  /// A PEM file of the certificate authorities that the backend's certificate is checked against,
  /// in place of the system's. Default: `$SSL_CERT_FILE`, or the system's. A file that cannot be
  /// read stops every delivery, with a log line.
  std::optional<std::string> certificateAuthorityFile;

  /// The URL of the proxy between this device and the backend, such as "http://user:pw@host:3128"
  /// or "socks5h://host:1080"; what travels through it stays encrypted up to the backend. Empty:
  /// no proxy. Default: what the environment names (`https_proxy`, `all_proxy`, `no_proxy`).
  std::optional<std::string> proxy;

  std::optional<std::vector<std::string>> preferredLanguages;  ///< Such as "en-GB", best first.
  std::optional<std::string> region;                           ///< Such as "GB".

  /// Identifies this device to this vendor. Default: derived by hash from the machine's id and the
  /// application, the same at every launch.
  std::optional<std::string> vendorIdentifier;
  std::optional<std::string> advertisingIdentifier;
  std::optional<int> trackingAuthorization;  ///< 0 not determined, 3 authorised.

  std::optional<PLRScreen> screen;
  std::optional<std::string> machine;  ///< Default: `uname`.

  /// Default: `uname`. Of a store on a system told to be older than 12.2, introductory prices and
  /// discounts are not reported.
  std::optional<std::string> systemVersion;

  /// Answers whether the device has been tampered with. Called once, on the library's main thread,
  /// while the start waits for its answer, for 20 seconds at most; it must not call the library.
  std::function<bool()> integrityProbe;
};

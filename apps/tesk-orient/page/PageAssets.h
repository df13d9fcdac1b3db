#pragma once

#include <string_view>

namespace App {

/// A file of `web/`, or of the 3D library, as it stands in every page.
struct PageAsset {
    std::string_view text;
    std::string_view sha256;  ///< of the text, hexadecimal
};

struct PageAssets {
    PageAsset pageTemplate;  ///< HTML with marks such as @TITLE@
    PageAsset style;
    PageAsset three;  ///< three.js
    PageAsset script;
    PageAsset licence;               ///< of three.js
    std::string_view threeRevision;  ///< as its authors number it
};

/// Put in by the build: see cmake/EmbedFiles.cmake.
extern const PageAssets kPageAssets;

}  // namespace App

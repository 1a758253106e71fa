// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace quillo {

/// A row of our own table of file types.
struct KnownType {
    QLatin1StringView extension;  ///< Lower case, without the dot.
    QLatin1StringView identifier;
    QLatin1StringView mimeType;
};

namespace type_table {

using namespace Qt::StringLiterals;

/// What a file's kind is called is read from words in the identifier ("archive", "script",
/// "image" and so on, else from the extension), so an identifier must not hold a word of another
/// kind. Types that MIME names would betray (an electronic book is "zip", a disk is an "image")
/// have a row for that reason.
inline constexpr KnownType kRows[] = {
    // Pictures.
    {"png"_L1, "public.png"_L1, "image/png"_L1},
    {"jpg"_L1, "public.jpeg"_L1, "image/jpeg"_L1},
    {"jpeg"_L1, "public.jpeg"_L1, "image/jpeg"_L1},
    {"jpe"_L1, "public.jpeg"_L1, "image/jpeg"_L1},
    {"tif"_L1, "public.tiff"_L1, "image/tiff"_L1},
    {"tiff"_L1, "public.tiff"_L1, "image/tiff"_L1},
    {"gif"_L1, "com.compuserve.gif"_L1, "image/gif"_L1},
    {"heic"_L1, "public.heic"_L1, "image/heif"_L1},
    {"heif"_L1, "public.heif"_L1, "image/heif"_L1},
    {"webp"_L1, "org.webmproject.webp"_L1, "image/webp"_L1},
    {"bmp"_L1, "com.microsoft.bmp"_L1, "image/bmp"_L1},
    {"svg"_L1, "public.svg-image"_L1, "image/svg+xml"_L1},
    {"svgz"_L1, "public.svg-image"_L1, "image/svg+xml"_L1},
    {"avif"_L1, "public.avif-image"_L1, "image/avif"_L1},
    {"jxl"_L1, "public.jpeg-xl-image"_L1, "image/jxl"_L1},
    {"ico"_L1, "public.icon-image"_L1, "image/vnd.microsoft.icon"_L1},
    {"psd"_L1, "com.adobe.photoshop-image"_L1, "image/vnd.adobe.photoshop"_L1},
    // Documents of office programs.
    {"pdf"_L1, "com.adobe.pdf"_L1, "application/pdf"_L1},
    {"ps"_L1, "public.ps-document"_L1, "application/postscript"_L1},
    {"eps"_L1, "public.eps-document"_L1, "image/x-eps"_L1},
    {"epub"_L1, "org.idpf.epub-container"_L1, "application/epub+zip"_L1},
    {"rtf"_L1, "public.rtf"_L1, "application/rtf"_L1},
    {"doc"_L1, "com.microsoft.word.doc"_L1, "application/msword"_L1},
    {"docx"_L1, "org.openxmlformats.wordprocessingml.document"_L1,
     "application/vnd.openxmlformats-officedocument.wordprocessingml.document"_L1},
    {"xls"_L1, "com.microsoft.excel.xls"_L1, "application/vnd.ms-excel"_L1},
    {"xlsx"_L1, "org.openxmlformats.spreadsheetml.sheet"_L1,
     "application/vnd.openxmlformats-officedocument.spreadsheetml.sheet"_L1},
    {"ppt"_L1, "com.microsoft.powerpoint.ppt"_L1, "application/vnd.ms-powerpoint"_L1},
    {"pptx"_L1, "org.openxmlformats.presentationml.presentation"_L1,
     "application/vnd.openxmlformats-officedocument.presentationml.presentation"_L1},
    {"odt"_L1, "org.oasis-open.opendocument.text"_L1, "application/vnd.oasis.opendocument.text"_L1},
    {"ods"_L1, "org.oasis-open.opendocument.spreadsheet"_L1,
     "application/vnd.oasis.opendocument.spreadsheet"_L1},
    {"odp"_L1, "org.oasis-open.opendocument.presentation"_L1,
     "application/vnd.oasis.opendocument.presentation"_L1},
    // Text for people and for programs.
    {"txt"_L1, "public.plain-text"_L1, "text/plain"_L1},
    {"text"_L1, "public.plain-text"_L1, "text/plain"_L1},
    {"log"_L1, "public.plain-text"_L1, "text/plain"_L1},
    {"md"_L1, "net.daringfireball.markdown"_L1, "text/markdown"_L1},
    {"markdown"_L1, "net.daringfireball.markdown"_L1, "text/markdown"_L1},
    {"csv"_L1, "public.comma-separated-values-text"_L1, "text/csv"_L1},
    {"tsv"_L1, "public.tab-separated-values-text"_L1, "text/tab-separated-values"_L1},
    {"json"_L1, "public.json"_L1, "application/json"_L1},
    {"xml"_L1, "public.xml"_L1, "application/xml"_L1},
    {"yaml"_L1, "public.yaml"_L1, "application/x-yaml"_L1},
    {"yml"_L1, "public.yaml"_L1, "application/x-yaml"_L1},
    {"html"_L1, "public.html"_L1, "text/html"_L1},
    {"htm"_L1, "public.html"_L1, "text/html"_L1},
    {"css"_L1, "public.css"_L1, "text/css"_L1},
    // Archives and volumes.
    {"zip"_L1, "public.zip-archive"_L1, "application/zip"_L1},
    {"gz"_L1, "org.gnu.gnu-zip-archive"_L1, "application/gzip"_L1},
    {"tgz"_L1, "org.gnu.gnu-zip-tar-archive"_L1, "application/x-compressed-tar"_L1},
    {"tar"_L1, "public.tar-archive"_L1, "application/x-tar"_L1},
    {"bz2"_L1, "public.bzip2-archive"_L1, "application/x-bzip"_L1},
    {"xz"_L1, "public.xz-archive"_L1, "application/x-xz"_L1},
    {"zst"_L1, "public.zstandard-archive"_L1, "application/zstd"_L1},
    {"rar"_L1, "com.rarlab.rar-archive"_L1, "application/vnd.rar"_L1},
    {"7z"_L1, "org.7-zip.7-zip-archive"_L1, "application/x-7z-compressed"_L1},
    {"iso"_L1, "public.iso-volume"_L1, "application/x-cd-image"_L1},
    {"dmg"_L1, "public.disk-volume"_L1, "application/x-apple-diskimage"_L1},
    {"img"_L1, "public.raw-disk-volume"_L1, "application/x-raw-disk-image"_L1},
    {"appimage"_L1, "public.portable-program"_L1, "application/vnd.appimage"_L1},
    // Sound and films.
    {"mp3"_L1, "public.mp3"_L1, "audio/mpeg"_L1},
    {"wav"_L1, "com.microsoft.waveform-audio"_L1, "audio/x-wav"_L1},
    {"m4a"_L1, "public.mpeg-4-audio"_L1, "audio/mp4"_L1},
    {"aac"_L1, "public.aac-audio"_L1, "audio/aac"_L1},
    {"flac"_L1, "org.xiph.flac"_L1, "audio/flac"_L1},
    {"ogg"_L1, "org.xiph.ogg-audio"_L1, "audio/ogg"_L1},
    {"oga"_L1, "org.xiph.ogg-audio"_L1, "audio/ogg"_L1},
    {"opus"_L1, "org.xiph.opus-audio"_L1, "audio/x-opus+ogg"_L1},
    {"mp4"_L1, "public.mpeg-4"_L1, "video/mp4"_L1},
    {"m4v"_L1, "public.mpeg-4-video"_L1, "video/mp4"_L1},
    {"mov"_L1, "public.movie"_L1, "video/quicktime"_L1},
    {"avi"_L1, "public.avi"_L1, "video/x-msvideo"_L1},
    {"mkv"_L1, "org.matroska.mkv"_L1, "video/x-matroska"_L1},
    {"webm"_L1, "org.webmproject.webm"_L1, "video/webm"_L1},
    {"wmv"_L1, "com.microsoft.windows-media-video"_L1, "video/x-ms-wmv"_L1},
    // Source code.
    {"c"_L1, "public.c-source"_L1, "text/x-csrc"_L1},
    {"h"_L1, "public.c-header"_L1, "text/x-chdr"_L1},
    {"cpp"_L1, "public.c-plus-plus-source"_L1, "text/x-c++src"_L1},
    {"cc"_L1, "public.c-plus-plus-source-code"_L1, "text/x-c++src"_L1},
    {"cxx"_L1, "public.c-plus-plus-source-code"_L1, "text/x-c++src"_L1},
    {"hpp"_L1, "public.c-plus-plus-header-source-code"_L1, "text/x-c++hdr"_L1},
    {"py"_L1, "public.python-script"_L1, "text/x-python"_L1},
    {"sh"_L1, "public.shell-script"_L1, "application/x-shellscript"_L1},
    {"bash"_L1, "public.bash-script"_L1, "application/x-shellscript"_L1},
    {"zsh"_L1, "public.zsh-script"_L1, "application/x-shellscript"_L1},
    {"rb"_L1, "public.ruby-script"_L1, "application/x-ruby"_L1},
    {"pl"_L1, "public.perl-script"_L1, "application/x-perl"_L1},
    {"php"_L1, "public.php-script"_L1, "application/x-php"_L1},
    {"lua"_L1, "public.lua-source-code"_L1, "text/x-lua"_L1},
    {"swift"_L1, "public.swift-source"_L1, "text/x-swift"_L1},
    {"js"_L1, "com.netscape.javascript-source"_L1, "text/javascript"_L1},
    {"mjs"_L1, "com.netscape.javascript-source"_L1, "text/javascript"_L1},
    {"ts"_L1, "public.typescript-source"_L1, "application/typescript"_L1},
    {"java"_L1, "public.java-source"_L1, "text/x-java"_L1},
    {"kt"_L1, "public.kotlin-source-code"_L1, "text/x-kotlin"_L1},
    {"go"_L1, "public.go-source"_L1, "text/x-go"_L1},
    {"rs"_L1, "public.rust-source"_L1, "text/rust"_L1},
    {"cs"_L1, "public.c-sharp-source-code"_L1, "text/x-csharp"_L1},
    {"sql"_L1, "public.sql-text"_L1, "application/sql"_L1},
    // Fonts and databases.
    {"ttf"_L1, "public.truetype-ttf-font"_L1, "font/ttf"_L1},
    {"otf"_L1, "public.opentype-font"_L1, "font/otf"_L1},
    {"ttc"_L1, "public.truetype-collection-font"_L1, "font/collection"_L1},
    {"woff"_L1, "org.w3.woff"_L1, "font/woff"_L1},
    {"woff2"_L1, "org.w3.woff2"_L1, "font/woff2"_L1},
    {"sqlite"_L1, "org.sqlite.database"_L1, "application/vnd.sqlite3"_L1},
    {"sqlite3"_L1, "org.sqlite.database"_L1, "application/vnd.sqlite3"_L1},
    {"db"_L1, "org.sqlite.database"_L1, "application/vnd.sqlite3"_L1},
};

}  // namespace type_table

}  // namespace quillo

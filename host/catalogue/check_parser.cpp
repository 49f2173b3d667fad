// Edge: XmlLite.
#include "host/catalogue/check_parser.h"

#include "foundation/owner.h"
#include "foundation/text.h"

#include <objidl.h>
#include <shlwapi.h>
#include <xmllite.h>

#include <fmt/format.h>

#include <algorithm>
#include <stdexcept>
#include <string>

#include "host/catalogue/check_encoding.h"

namespace tarnwick::host {
namespace {

struct ModuleTraits {
  using Value = HMODULE;
  static Value None() { return nullptr; }
  static void Close(Value module) { FreeLibrary(module); }
};
using Module = Owner<ModuleTraits>;

struct ParserError {
  HRESULT code;
  const char* text;
};
constexpr auto kCode = [](unsigned value) { return static_cast<HRESULT>(value); };
const ParserError kErrors[] = {
    {kCode(MX_E_INPUTEND), "the text ends inside of an element or a tag"},
    {kCode(WC_E_WHITESPACE), "white space is missing"},
    {kCode(WC_E_SEMICOLON), "a reference has no ';' at its end; write &amp; for '&'"},
    {kCode(WC_E_GREATERTHAN), "a '>' is missing"},
    {kCode(WC_E_QUOTE), "a quote is missing"},
    {kCode(WC_E_EQUAL), "an attribute has no '='"},
    {kCode(WC_E_LESSTHAN), "a '<' stands where none may be"},
    {kCode(WC_E_HEXDIGIT), "a hexadecimal digit is missing"},
    {kCode(WC_E_DIGIT), "a digit is missing"},
    {kCode(WC_E_XMLCHARACTER), "a character that XML doesn't allow"},
    {kCode(WC_E_NAMECHARACTER), "a character that no name may have; write &lt; for '<' and &amp; for '&'"},
    {kCode(WC_E_SYNTAX), "markup that isn't XML's, or a second document behind the first"},
    {kCode(WC_E_CDSECT), "a CDATA section that isn't right"},
    {kCode(WC_E_COMMENT), "a comment that isn't right"},
    {kCode(WC_E_NAME), "a name is missing or isn't right"},
    {kCode(WC_E_ROOTELEMENT), "there is no root element"},
    {kCode(WC_E_ELEMENTMATCH), "a closing tag that doesn't match the element that is open"},
    {kCode(WC_E_UNIQUEATTRIBUTE), "an attribute stands twice"},
    {kCode(WC_E_LEADINGXML), "the XML declaration isn't at the very beginning"},
    {kCode(WC_E_XMLDECL), "an XML declaration that isn't right"},
    {kCode(WC_E_ENCNAME), "an encoding without a name"},
    {kCode(WC_E_UNDECLAREDENTITY), "an entity that XML doesn't know; write the character itself"},
    {kCode(WC_E_CDSECTEND), "']]>' stands in a text"},
    {kCode(WC_E_MOREDATA), "something stands behind the root element"},
    {kCode(NC_E_UNDECLAREDPREFIX), "a prefix that no xmlns attribute declares"},
    {kCode(NC_E_QNAMECHARACTER), "a character that no name may have; write &lt; for '<' and &amp; for '&'"},
};

std::string TextOfError(HRESULT code) {
  const auto* const row = std::ranges::find(kErrors, code, &ParserError::code);
  if (row != std::end(kErrors)) return row->text;
  return fmt::format("the parser stops with 0x{:08X}", static_cast<uint32_t>(code));
}

// The text as the parser shall see it, each byte at its own place: without the name of another encoding, and
// with bytes that are no UTF-8 made harmless, for both are told of elsewhere.
std::string ForParser(std::string_view text) {
  std::string bytes(text);
  const std::string_view encoding = DeclaredEncoding(text);
  if (!encoding.empty() && !NamesUtf8(encoding)) {
    const auto name = static_cast<size_t>(encoding.data() - text.data());
    const size_t word = bytes.rfind("encoding", name);
    std::fill_n(bytes.begin() + static_cast<ptrdiff_t>(word), name + encoding.size() + 1 - word, ' ');
  }
  for (size_t at = FirstNoUtf8(bytes); at != bytes.npos; at = FirstNoUtf8(bytes, at)) bytes[at] = '?';
  return bytes;
}

// Wine's parser waits for ever where the text ends inside of some markup. So it gets an end that closes
// whatever may be open, and closes an element that the text doesn't have: behind it there is always an error.
// The first "-->" may complete a "<!" instead of closing anything.
std::string FalseEnd(std::string_view text) {
  std::string name = "_";
  while (text.find("<" + name) != text.npos) name += '_';
  return "--> -->]]>?>\"'></" + name + ">";
}

using CreateReader = HRESULT(WINAPI*)(REFIID, void**, IMalloc*);

ComPointer<IXmlReader> OpenReader(HMODULE library) {
  const auto create =
      reinterpret_cast<CreateReader>(reinterpret_cast<void*>(GetProcAddress(library, "CreateXmlReader")));
  void* reader = nullptr;
  if (create == nullptr || FAILED(create(__uuidof(IXmlReader), &reader, nullptr)))
    throw std::runtime_error("the system's XML parser, xmllite.dll, can't be used");
  return ComPointer<IXmlReader>(static_cast<IXmlReader*>(reader));
}

Finding FaultAt(std::string_view text, IXmlReader& reader, Check check, std::string message) {
  UINT line = 1;
  UINT column = 1;
  reader.GetLineNumber(&line);
  reader.GetLinePosition(&column);
  return {OffsetOf(text, std::max(line, 1u), std::max(column, 1u)), check, {}, std::move(message)};
}

struct Progress {
  size_t depth = 0;
  bool rootSeen = false;
};

// Goes through the nodes to the first error, or until they are nested too deeply; that is counted here, for
// the parser may leave it unlimited.
HRESULT ReadNodes(IXmlReader& reader, Progress& progress) {
  XmlNodeType type = XmlNodeType_None;
  HRESULT result = S_OK;
  while (progress.depth <= kMostDepth && (result = reader.Read(&type)) == S_OK) {
    progress.rootSeen = progress.rootSeen || type == XmlNodeType_Element;
    if (type == XmlNodeType_Element && !reader.IsEmptyElement()) ++progress.depth;
    if (type == XmlNodeType_EndElement && progress.depth > 0) --progress.depth;
  }
  return result;
}

// Is there nothing but white space from here on?
bool IsBlankFrom(std::string_view text, size_t at) {
  return text.find_first_not_of(" \t\r\n", at) == text.npos;
}

bool EndsInComment(std::string_view text) {
  const size_t begin = text.rfind("<!--");
  return begin != text.npos && text.find("-->", begin + 4) == text.npos;
}

std::optional<Finding> FaultOf(std::string_view text, IXmlReader& reader) {
  Progress progress;
  const HRESULT result = ReadNodes(reader, progress);
  if (progress.depth > kMostDepth)
    return FaultAt(text, reader, kTooDeep, fmt::format("elements are nested deeper than {}", kMostDepth));
  if (result == kCode(WC_E_DTDPROHIBITED))
    return FaultAt(text, reader, kDocumentType,
                   "a document type: the library leaves its entities unresolved");
  Finding fault = FaultAt(text, reader, kNotWellFormed, TextOfError(result));
  if (EndsInComment(text)) fault = {text.rfind("<!--"), kNotWellFormed, {}, "a comment that isn't closed"};
  if (!progress.rootSeen && SUCCEEDED(result)) fault.message = TextOfError(kCode(WC_E_ROOTELEMENT));
  if (!progress.rootSeen || !IsBlankFrom(text, fault.at)) return fault;
  if (progress.depth == 0) return std::nullopt;
  // The false end's own tag is met in its markup only.
  if (result == kCode(WC_E_ELEMENTMATCH) && text.ends_with('>')) return fault;
  return Finding{text.size(), kNotWellFormed, {}, TextOfError(kCode(MX_E_INPUTEND))};
}

}  // namespace

std::optional<Finding> FindParserFault(std::string_view text) {
  const Module library(LoadLibraryExW(L"xmllite.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32));
  const ComPointer<IXmlReader> reader = OpenReader(library.Get());
  // Wine's parser takes nothing behind white space at the beginning.
  const size_t first = std::min(text.find_first_not_of(" \t\r\n"), text.size());
  text.remove_prefix(first);
  const std::string bytes = ForParser(text) + FalseEnd(text);
  const ComPointer<IStream> stream(
      SHCreateMemStream(reinterpret_cast<const BYTE*>(bytes.data()), static_cast<UINT>(bytes.size())));
  if (!stream || FAILED(reader.Get()->SetInput(stream.Get())))
    throw std::runtime_error("the system's XML parser can't read the text");
  std::optional<Finding> fault = FaultOf(text, *reader.Get());
  if (fault) fault->at += first;
  return fault;
}

}  // namespace tarnwick::host

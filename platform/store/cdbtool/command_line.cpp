#include "platform/store/cdbtool/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <functional>
#include <map>

#include "platform/store/cdbtool/commands.h"
#include "platform/store/exchange/bytes/encoding.h"

namespace cdbtool {

namespace {

namespace exchange = store::exchange;

constexpr const char* kAbout =
    "Moves data into and out of .cdb databases.\n"
    "Exit codes: 0 done, 1 failed, 2 wrong usage, 3 done but records were left out.";

const std::map<std::string, RowFormat> kExportFormats{{"csv", RowFormat::csv},
                                                      {"json", RowFormat::json},
                                                      {"jsonl", RowFormat::jsonLines},
                                                      {"html", RowFormat::html},
                                                      {"sql", RowFormat::sql}};

/// The program's options and sub-commands, and where they put what the user has given.
class CommandLine {
 public:
  CommandLine();
  int run(std::vector<std::string> arguments);

 private:
  CLI::App* add(const std::string& name, const std::string& about, const std::string& example,
                std::function<int()> run);
  CLI::App* addQuiet(CLI::App* command);
  void addRowFormats(CLI::App* command);
  RowFormat rowFormat() const;
  void addListing();
  void addImport();
  void addExport();
  void addUpkeep();
  int runImport();
  int runExport();

  CLI::App app_{kAbout, "cdbtool"};
  std::function<int()> chosen_;

  DatabaseFile file_;
  std::string text_;
  bool isQuiet_ = false;
  bool withCounts_ = false;
  bool isCsv_ = false;
  bool isJson_ = false;
  FindRequest find_;
  ImportRequest import_;
  ExportRequest export_;
  std::string delimiter_;
  std::string encoding_;
  std::string inputFormat_;
  std::string exportFormat_;
  bool noHeader_ = false;
  bool header_ = false;
  bool isNew_ = false;
  bool isAppended_ = false;
  std::vector<std::string> types_;
  std::vector<std::string> map_;
};

std::string notEmpty(const std::string& text) {
  return text.empty() ? "an empty text is nothing here" : "";
}

/// A database, which can't come or go by a stream.
std::string noStream(const std::string& text) {
  if (text.empty()) return notEmpty(text);
  return text == kStandardStream ? "a database can't be the standard input or output" : "";
}

CLI::Option* addFile(CLI::App* command, std::string& path) {
  return command->add_option("FILE", path, "The database")->required()->check(noStream);
}

/// A database that is there, and may be a server's.
void addFile(CLI::App* command, DatabaseFile& file) {
  addFile(command, file.path);
  command
      ->add_option("--password-file", file.passwordFile,
                   "The file whose first line is the password, when FILE links to a server that wants one")
      ->check(notEmpty);
}

/// A separator as the user writes it; not a character of its own for anything else.
char separatorOf(const std::string& text) {
  static const std::map<std::string, char> kNames{
      {"comma", ','}, {"semicolon", ';'}, {"tab", '\t'}, {"\\t", '\t'}, {"bar", '|'}};
  const auto named = kNames.find(text);
  if (named != kNames.end()) return named->second;
  const bool fits = text.size() == 1 && static_cast<unsigned char>(text[0]) < 0x80 &&
                    std::string("\"\r\n").find(text[0]) == std::string::npos;
  if (!fits)
    throw CLI::ValidationError("--delimiter",
                               "\"" + text + "\" is not one character (or comma, semicolon, tab, bar)");
  return text[0];
}

/// "COLUMN=VALUE" in its two parts; the last sign counts for a name that holds one.
std::vector<std::pair<std::string, std::string>> pairsOf(const std::string& option,
                                                         const std::vector<std::string>& texts) {
  std::vector<std::pair<std::string, std::string>> pairs;
  for (const std::string& text : texts) {
    const std::size_t sign = text.rfind('=');
    if (sign == std::string::npos || sign == 0 || sign + 1 == text.size()) {
      throw CLI::ValidationError(option,
                                 "\"" + text + "\" is not COLUMN=" + (option == "--type" ? "TYPE" : "NAME"));
    }
    pairs.emplace_back(text.substr(0, sign), text.substr(sign + 1));
  }
  return pairs;
}

CommandLine::CommandLine() {
  app_.require_subcommand(1);
  app_.set_version_flag("--version", std::string("cdbtool ") + QUIVANE_VERSION);
  app_.footer("cdbtool COMMAND --help tells more about a command.");
  addListing();
  addImport();
  addExport();
  addUpkeep();
}

CLI::App* CommandLine::add(const std::string& name, const std::string& about, const std::string& example,
                           std::function<int()> run) {
  CLI::App* command = app_.add_subcommand(name, about);
  command->footer("Example:\n  cdbtool " + example);
  command->callback([this, run = std::move(run)] { chosen_ = run; });
  return command;
}

CLI::App* CommandLine::addQuiet(CLI::App* command) {
  command->add_flag("-q,--quiet", isQuiet_, "Tell failures only");
  return command;
}

void CommandLine::addRowFormats(CLI::App* command) {
  CLI::Option* csv = command->add_flag("--csv", isCsv_, "As comma-separated values");
  command->add_flag("--json", isJson_, "As an array of objects")->excludes(csv);
}

RowFormat CommandLine::rowFormat() const {
  return isCsv_ ? RowFormat::csv : isJson_ ? RowFormat::json : RowFormat::text;
}

void CommandLine::addListing() {
  CLI::App* tables = add("tables", "List the tables", "tables --counts library.cdb",
                         [this] { return listTables(file_, withCounts_); });
  addFile(tables, file_);
  tables->add_flag("--counts", withCounts_, "With the number of records, behind a tab");

  CLI::App* show =
      add("show", "Show the records of a table, a saved query or a SELECT", "show library.cdb Books", [this] {
        return cdbtool::show({file_, text_, rowFormat()});
      });
  addFile(show, file_);
  show->add_option("WHAT", text_, "A table, a view, a saved query or a SELECT")->required()->check(notEmpty);
  addRowFormats(show);

  CLI::App* find = add("find", "Find a text in all tables: table, record, field and value, parted by tabs",
                       "find library.cdb heron", [this] { return cdbtool::find(find_); });
  addFile(find, find_.file);
  find->add_option("TEXT", find_.text, "The text")->required();
  find->add_option("--table", find_.table, "Only in this table")->check(notEmpty);
  find->add_flag("--case", find_.matchesCase, "Capital and small letters differ");

  CLI::App* query =
      add("query", "Run one statement of SQL", "query library.cdb \"SELECT count(*) FROM Books\"",
          [this] { return cdbtool::query(file_, text_, rowFormat(), isQuiet_); });
  addFile(query, file_);
  query->add_option("SQL", text_, "The statement")->required();
  addRowFormats(query);
  addQuiet(query);
}

void CommandLine::addImport() {
  CLI::App* command =
      add("import", "Import CSV or JSON into a table, all of it or nothing",
          "import library.cdb members.csv --table Members --type Zip=Text", [this] { return runImport(); });
  addFile(command, import_.file);
  command->add_option("SOURCE", import_.source, "The file to import; - is the standard input")
      ->required()
      ->check(notEmpty);
  exchange::ImportOptions& options = import_.options;
  command
      ->add_option("--table", options.table,
                   "The table; by default a new or existing one called like the file")
      ->check(notEmpty);
  CLI::Option* isNew = command->add_flag("--new", isNew_, "The table must not be there yet");
  command->add_flag("--append", isAppended_, "The table must be there")->excludes(isNew);
  command->add_option("--format", inputFormat_, "csv or json instead of what is detected")
      ->check(CLI::IsMember({"csv", "json"}));
  command
      ->add_option("--delimiter", delimiter_, "The character between fields, or comma, semicolon, tab, bar")
      ->check(notEmpty);
  CLI::Option* noHeader = command->add_flag("--no-header", noHeader_, "The first line is a record");
  command->add_flag("--header", header_, "The first line has the names of the columns")->excludes(noHeader);
  command->add_option("--encoding", encoding_, "utf-8, windows-1252, utf-16le or utf-16be")->check(notEmpty);
  command->add_option("--null", options.nullText,
                      "The text that stands for no value; by default the empty field");
  command->add_option("--type", types_, "COLUMN=TYPE: the type of a column of a new table")
      ->take_all()
      ->expected(1);
  command->add_option("--map", map_, "COLUMN=NAME: the column of the table for a column of the file")
      ->take_all()
      ->expected(1);
  command->add_option("--skip", options.skipped, "A column of the file that is not imported")
      ->take_all()
      ->expected(1)
      ->check(notEmpty);
  command->add_flag("--replace", options.replaces, "A record takes the place of the one with the same key");
  command->add_option("--key", options.keyColumns, "A column of the key, instead of the table's primary key")
      ->take_all()
      ->expected(1)
      ->check(notEmpty)
      ->needs("--replace");
  command->add_flag("--exact", options.isExact,
                    "Each value as what it is in the file, whatever the type of its column");
  command->add_flag("--keep-good", import_.keepsGoodRows, "Import what can be taken when some records can't");
  command->add_flag("--dry-run", import_.isTrial, "Only tell what would be done");
  command
      ->add_option("--rejects", import_.rejectsFile,
                   "A new file for the records that are left out, with reasons; - is the standard output")
      ->check(notEmpty);
  command->add_flag("--force", import_.replacesFiles, "Replace the file of --rejects");
  addQuiet(command);
}

void CommandLine::addExport() {
  CLI::App* command = add("export", "Export a table, a saved query or a SELECT",
                          "export library.cdb Books -o books.csv", [this] { return runExport(); });
  addFile(command, export_.file);
  command->add_option("WHAT", export_.what, "A table, a view, a saved query or a SELECT")
      ->required()
      ->check(notEmpty);
  command
      ->add_option("-o,--output", export_.target,
                   "The new file; - is the standard output, which is the default")
      ->check(notEmpty);
  command
      ->add_option("--format", exportFormat_,
                   "csv, json, jsonl, html or sql; by default as the output is called")
      ->check(CLI::IsMember({"csv", "json", "jsonl", "html", "sql"}));
  command
      ->add_option("--delimiter", delimiter_, "The character between fields, or comma, semicolon, tab, bar")
      ->check(notEmpty);
  command->add_flag("--no-header", noHeader_, "Without the names of the columns");
  command->add_option("--null", export_.nullText, "The text that stands for no value");
  command->add_option("--line-end", export_.lineEnd, "crlf or lf")->check(CLI::IsMember({"crlf", "lf"}));
  command->add_flag("--bom", export_.hasMark, "With a byte-order mark, by which some programs know UTF-8");
  command->add_flag("--exact", export_.isExact,
                    "Each value so that import --exact brings it back, whatever the type of its column");
  command->add_flag("--force", export_.replacesFiles, "Replace an existing file");
  addQuiet(command);
}

void CommandLine::addUpkeep() {
  addFile(
      add("new", "Make an empty database", "new library.cdb", [this] { return makeDatabase(file_.path); }),
      file_.path);

  CLI::App* backup = add("backup", "Copy a database, also while it is in use",
                         "backup library.cdb library-copy.cdb", [this] { return backUp(file_, text_); });
  addFile(backup, file_);
  backup->add_option("TARGET", text_, "The new file")->required()->check(noStream);

  addFile(addQuiet(add("check", "Check that a database is sound", "check library.cdb",
                       [this] { return cdbtool::check(file_, isQuiet_); })),
          file_);
  addFile(add("info", "Tell what a database is", "info library.cdb", [this] { return cdbtool::info(file_); }),
          file_);
}

int CommandLine::runImport() {
  exchange::ImportOptions& options = import_.options;
  import_.isQuiet = isQuiet_;
  if (import_.source == kStandardStream && options.table.empty()) {
    throw CLI::ValidationError("--table", "the standard input has no name that the table could have");
  }
  if (import_.isTrial && import_.rejectsFile == kStandardStream) {
    throw CLI::ValidationError("--rejects", "the standard output is for what --dry-run tells");
  }
  if (isNew_) options.target = exchange::ImportOptions::Target::newTable;
  if (isAppended_) options.target = exchange::ImportOptions::Target::existingTable;
  if (!inputFormat_.empty()) options.isJson = inputFormat_ == "json";
  if (!delimiter_.empty()) options.separator = separatorOf(delimiter_);
  if (noHeader_ || header_) options.hasHeader = header_;
  if (!encoding_.empty()) {
    options.encoding = exchange::encodingOf(encoding_);
    if (!options.encoding) throw CLI::ValidationError("--encoding", "\"" + encoding_ + "\" is not known");
  }
  options.types = pairsOf("--type", types_);
  for (const auto& [column, type] : options.types) {
    if (store::Status status = exchange::checkType(type); !status)
      throw CLI::ValidationError("--type", status.message());
  }
  options.map = pairsOf("--map", map_);
  return import(import_);
}

int CommandLine::runExport() {
  export_.isQuiet = isQuiet_;
  export_.hasHeader = !noHeader_;
  if (!delimiter_.empty()) export_.separator = separatorOf(delimiter_);
  if (!exportFormat_.empty()) export_.format = kExportFormats.at(exportFormat_);
  return exportRows(export_);
}

int CommandLine::run(std::vector<std::string> arguments) {
  // The library takes them from the end.
  std::reverse(arguments.begin(), arguments.end());
  try {
    app_.parse(std::move(arguments));
    return chosen_();
  } catch (const CLI::Success& help) {
    std::ostringstream text;
    app_.exit(help, text, text);
    StandardOutput output;
    store::Status status = output.write(text.str());
    if (status) status = StandardOutput::finish();
    return status ? kDone : failed(status);
  } catch (const CLI::ParseError& error) {
    Console::complain(error.what());
    std::fputs("cdbtool --help tells how it is used.\n", stderr);
    return kWrongUsage;
  }
}

}  // namespace

int runCommandLine(std::vector<std::string> arguments) {
  return CommandLine().run(std::move(arguments));
}

}  // namespace cdbtool

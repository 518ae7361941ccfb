// SPDX-License-Identifier: Apache-2.0
#include "BatchCommand.h"

#include "Arguments.h"
#include "Failure.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <system_error>

using namespace quorvelkit;

namespace {

constexpr int exitCodeOfErrorLines = 3;

OutputFormat outputFormat(const std::string& name) {
  if (name == "csv") return OutputFormat::csv;
  return name == "geojson" ? OutputFormat::geoJSONSequence : OutputFormat::ndjson;
}

InputFormat inputFormat(const std::string& name) {
  if (name.empty()) return InputFormat::detect;
  return name == "csv" ? InputFormat::csv : InputFormat::ndjson;
}

std::string counted(std::uint64_t number, const char* word) {
  return groupedText(number) + ' ' + word + (number == 1 ? "" : "s");
}

/// The input of a batch. Owns the descriptor of a file.
class InputFile {
 public:
  explicit InputFile(const std::string& path)
      : descriptor(path == "-" ? STDIN_FILENO : open(path.c_str(), O_RDONLY | O_CLOEXEC)) {
    if (descriptor == -1) {
      throw std::runtime_error("The file '" + path +
                               "' cannot be read: " + std::generic_category().message(errno) + '.');
    }
  }
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;
  ~InputFile() {
    if (descriptor != STDIN_FILENO) close(descriptor);
  }

  const int descriptor;
};

}  // namespace

BatchCommand::BatchCommand(CLI::App& program, Backend& backend)
    : command_(program.add_subcommand("batch", "Answer each line of a file")), backend_(backend) {
  addOptions();
  backend_.addOptions(*command_);
}

void BatchCommand::addOptions() {
  std::vector<std::string> names;
  for (const BatchKind& kind : batchKinds())
    names.emplace_back(kind.name);
  command_->add_option("command", kind_, "What to ask: route, candidates, suggest or reverse")
      ->required()
      ->check(CLI::IsMember(names));
  command_->add_option("file", file_, "File with one request in each line, or - for standard input")
      ->required();
  command_
      ->add_option("--input-format", inputFormat_,
                   "csv (with a header) or ndjson. Default: by the first character")
      ->check(CLI::IsMember(std::vector<std::string>{"csv", "ndjson"}));
  command_->add_option("--near", settings_.near, "Position for lines without one, as LAT,LON")
      ->check(checkCoordinate);
  command_->add_option("--format", format_, "ndjson, csv or geojson (a sequence). Default: ndjson")
      ->check(CLI::IsMember(std::vector<std::string>{"ndjson", "csv", "geojson"}));
  command_->add_option("--columns", columns_, "Columns of csv and geojson, separated by commas")
      ->delimiter(',');
  auto* const output =
      command_->add_option("--output", output_, "File for the answers. Default: standard output");
  command_->add_flag("--resume", resumes_, "Continue the file of --output where it ends")
      ->needs(output);
  command_->add_flag("--unordered", isUnordered_, "Write answers as they come, not in order");
  command_
      ->add_option("--in-flight", settings_.inFlight,
                   "Largest number of requests at a time. Default: 64")
      ->check(CLI::Range(1, 10'000));
  command_
      ->add_option("--rate", settings_.rate,
                   "Largest number of requests in a second. Default: no limit")
      ->check(CLI::Range(0.001, 1e6));
  command_
      ->add_option("--retries", settings_.retries,
                   "Largest number of repetitions of a request after a transient error. Default: 8")
      ->check(CLI::Range(0, 1000));
}

std::variant<std::vector<BatchColumn>, std::string> BatchCommand::columns(
    const BatchKind& kind, OutputFormat format) const {
  if (columns_.empty()) return kind.columns;
  if (format == OutputFormat::ndjson)
    return "--columns needs --format csv or geojson: ndjson has the whole answer.";
  std::vector<BatchColumn> chosen;
  for (const std::string& name : columns_) {
    const auto found = std::find_if(kind.columns.begin(), kind.columns.end(),
                                    [&](const BatchColumn& column) { return column.name == name; });
    if (found == kind.columns.end()) {
      std::string text =
          "--columns: " + std::string(kind.name) + " has no column '" + name + "', but";
      for (const BatchColumn& column : kind.columns)
        text += ' ' + std::string(column.name);
      return text;
    }
    chosen.push_back(*found);
  }
  return chosen;
}

int BatchCommand::run() const {
  const auto kind = std::find_if(batchKinds().begin(), batchKinds().end(),
                                 [this](const BatchKind& one) { return one.name == kind_; });
  const OutputFormat format = outputFormat(format_);
  auto chosen = columns(*kind, format);
  if (const auto* const fault = std::get_if<std::string>(&chosen)) {
    fail(*fault);
    return usageError;
  }
  const BatchFormatter formatter(*kind, format, std::get<std::vector<BatchColumn>>(chosen));
  const InputFile input(file_);
  BatchOutput output;
  if (!output_.empty()) output.open(output_, format, formatter.header(), resumes_);
  QVCallOptions options;
  options.retry.emplace();
  if (const auto problem = backend_.load(std::cerr, options)) return fail(*problem);
  auto settings = settings_;
  settings.isOrdered = !isUnordered_;
  auto required = kind->requiredInputs;
  if (!settings.near.empty()) std::erase(required, "near");
  BatchJob job(backend_, *kind, formatter, settings,
               BatchInput(inputFormat(inputFormat_), std::move(required)), input.descriptor,
               output);
  return report(job.run());
}

int BatchCommand::report(const BatchJob::Summary& summary) const {
  std::string numbers =
      counted(summary.answers, "answer") + ", " + counted(summary.errors, "error");
  if (summary.earlierAnswers > 0)
    numbers += ", after " + counted(summary.earlierAnswers, "earlier line");
  if (summary.signal != 0) {
    fail("Interrupted with " + numbers + ". " +
         (output_.empty() ? "It can be continued only with --output."
                          : "The same command with --resume continues."));
    return 128 + summary.signal;
  }
  if (summary.errors > 0) {
    fail(numbers + ". Each line with an error says why.");
    return exitCodeOfErrorLines;
  }
  if (isatty(STDERR_FILENO) != 0) std::cerr << "quorvel: " << numbers << ".\n";
  return 0;
}

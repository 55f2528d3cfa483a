// Drives a harness without libFuzzer: each file of its corpus as it stands, and then so many
// mutations of them from a seed, the same each time.
//
//   fuzz-NAME [--seed N] [--mutations N] FOLDER...
//   fuzz-NAME --linear FOLDER...     how the time grows with inputs that repeat a file
//   fuzz-NAME FILE...                files alone, such as one that was reported
//
// Ends at the first input that does not hold, which stands in finding-NAME then.

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <random>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t kLongestMutant = 4096;

std::string findingName;  // NOLINT: a signal handler has no other way to it.
Bytes atWork;             // NOLINT

void KeepFinding(int signal) {
  if (std::FILE* file = std::fopen(findingName.c_str(), "wb")) {
    std::fwrite(atWork.data(), 1, atWork.size(), file);
    std::fclose(file);
    std::fprintf(stderr, "the input stands in %s\n", findingName.c_str());
  }
  std::signal(signal, SIG_DFL);
  std::raise(signal);
}

void Run(Bytes input) {
  atWork = std::move(input);
  LLVMFuzzerTestOneInput(atWork.data(), atWork.size());
}

Bytes ContentOf(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) qFatal("cannot read %s", qPrintable(path));
  const QByteArray bytes = file.readAll();
  return {bytes.begin(), bytes.end()};
}

std::vector<Bytes> ReadCorpus(const QStringList& paths) {
  std::vector<Bytes> corpus;
  for (const QString& path : paths) {
    if (QFileInfo(path).isFile()) corpus.push_back(ContentOf(path));
    const QDir folder(path);
    for (const QString& name : folder.entryList(QDir::Files, QDir::Name))
      corpus.push_back(ContentOf(folder.filePath(name)));
  }
  return corpus;
}

class Mutator {
 public:
  Mutator(std::uint32_t seed, const std::vector<Bytes>& corpus) : random_(seed), corpus_(corpus) {}

  Bytes Next() {
    Bytes bytes = Any();
    for (std::uint32_t left = 1 + Below(4); left > 0; --left) Change(bytes);
    if (bytes.size() > kLongestMutant) bytes.resize(kLongestMutant);
    return bytes;
  }

 private:
  // Not a distribution of the library's, which may differ from one to the next.
  std::uint32_t Below(std::size_t count) {
    return count == 0 ? 0 : random_() % static_cast<std::uint32_t>(count);
  }
  const Bytes& Any() { return corpus_[Below(corpus_.size())]; }
  std::uint8_t AnyByte() {
    static constexpr std::uint8_t kTelling[]{0,    1,    0x7F, 0x80, 0xFF, 0xF8, 0xF9, 0xFA,
                                             0xFE, ' ',  '.',  ',',  '-',  '0',  '9',  '=',
                                             ';',  '\n', '[',  '"',  '\\', ':'};
    return Below(2) == 0 ? kTelling[Below(std::size(kTelling))]
                         : static_cast<std::uint8_t>(random_());
  }
  static auto At(Bytes& bytes, std::size_t place) {
    return bytes.begin() + static_cast<std::ptrdiff_t>(place);
  }

  void Change(Bytes& bytes) {
    const std::size_t place = Below(bytes.size() + 1);
    const std::size_t length = std::min<std::size_t>(1 + Below(16), bytes.size() - place);
    switch (Below(6)) {
      case 0:
        if (place < bytes.size()) bytes[place] = AnyByte();
        break;
      case 1:
        if (place < bytes.size()) bytes[place] ^= static_cast<std::uint8_t>(1U << Below(8));
        break;
      case 2:
        bytes.insert(At(bytes, place), AnyByte());
        break;
      case 3:
        bytes.erase(At(bytes, place), At(bytes, place + length));
        break;
      case 4: {
        const Bytes piece(At(bytes, place), At(bytes, place + length));
        bytes.insert(At(bytes, Below(bytes.size() + 1)), piece.begin(), piece.end());
        break;
      }
      default: {
        const Bytes& other = Any();
        const std::size_t from = Below(other.size() + 1);
        bytes.resize(place);
        bytes.insert(bytes.end(), other.begin() + static_cast<std::ptrdiff_t>(from), other.end());
      }
    }
  }

  std::mt19937 random_;
  const std::vector<Bytes>& corpus_;
};

/// Processor time of a run in milliseconds.
double TimeOf(const Bytes& input) {
  timespec begin{};
  timespec end{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &begin);
  Run(input);
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &end);
  return 1e3 * static_cast<double>(end.tv_sec - begin.tv_sec) +
         1e-6 * static_cast<double>(end.tv_nsec - begin.tv_nsec);
}

Bytes Repeated(const Bytes& piece, std::size_t size) {
  Bytes input;
  while (input.size() < size) input.insert(input.end(), piece.begin(), piece.end());
  return input;
}

/// How many times as long four times the input takes: the least of some tries, of which the first
/// that is good is enough.
double Growth(const Bytes& piece) {
  constexpr std::size_t kShort = std::size_t{12} * 1024;
  constexpr std::size_t kTimes = 4;
  constexpr int kTries = 4;
  constexpr double kGood = 6;
  // What takes less is over too soon to be measured.
  constexpr double kLeastMs = 1;
  double least = 0;
  for (int tries = 0; tries < kTries && (tries == 0 || least > kGood); ++tries) {
    const double before = TimeOf(Repeated(piece, kShort));
    const double time = TimeOf(Repeated(piece, kTimes * kShort));
    const double growth = time < kLeastMs ? 0 : time / std::max(before, 1e-3);
    least = tries == 0 ? growth : std::min(least, growth);
  }
  return least;
}

/// Four times an input may take four times as long, not sixteen times.
int CheckLinear(const std::vector<Bytes>& corpus) {
  constexpr double kMost = 9;
  double worst = 0;
  for (const Bytes& piece : corpus) {
    const double growth = piece.empty() ? 0 : Growth(piece);
    if (growth > kMost) {
      std::fprintf(stderr, "does not hold: 4 times the input takes %.1f times as long\n", growth);
      std::abort();
    }
    worst = std::max(worst, growth);
  }
  std::printf("4 times the input takes at most %.1f times as long\n", worst);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  findingName =
      "finding-" + QFileInfo(QString::fromLocal8Bit(argv[0])).baseName().mid(5).toStdString();
  QStringList paths = QCoreApplication::arguments().mid(1);
  const auto take = [&](const char* name, std::uint32_t otherwise) {
    const qsizetype at = paths.indexOf(QString::fromLatin1(name));
    if (at < 0 || at + 1 >= paths.size()) return otherwise;
    const std::uint32_t value = paths[at + 1].toUInt();
    paths.remove(at, 2);
    return value;
  };
  const std::uint32_t seed = take("--seed", 1);
  const std::uint32_t mutations = take("--mutations", 0);
  const bool linear = paths.removeAll(QStringLiteral("--linear")) > 0;
  const std::vector<Bytes> corpus = ReadCorpus(paths);
  if (corpus.empty()) qFatal("no input");
  for (const int signal : {SIGABRT, SIGSEGV, SIGFPE, SIGBUS, SIGALRM})
    std::signal(signal, KeepFinding);
  if (linear) return CheckLinear(corpus);
  for (const Bytes& input : corpus) Run(input);
  Mutator mutator(seed, corpus);
  std::size_t longest = 0;
  for (std::uint32_t i = 0; i < mutations; ++i) {
    Run(mutator.Next());
    longest = std::max(longest, atWork.size());
  }
  std::printf("%zu inputs, %u mutations, the longest of %zu bytes\n", corpus.size(), mutations,
              longest);
  return 0;
}

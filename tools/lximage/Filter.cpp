#include "CommandLine.h"
#include "FilterWatch.h"
#include "Filters.h"
#include "LXTileWalk.h"
#include "Mask.h"
#include "ParamsFile.h"
#include "Picture.h"
#include "Streams.h"
#include "Values.h"

namespace {

const QString LoadOption = QStringLiteral("load-params");
const QString SaveOption = QStringLiteral("save-params");
const QString SelectionOption = QStringLiteral("selection");
const QString AtOption = QStringLiteral("at");

void AddOptions(CommandLine& line, const Filter& filter) {
    filter.AddOptions(line);
    if (!filter.changesMask)
        line.AddOption({SelectionOption,
                        QStringLiteral("Only through a mask: its transparency, or its brightness "
                                       "if it has none."),
                        QStringLiteral("MASK")});
    line.AddOption({AtOption, QStringLiteral("Where the mask's top left corner lies."),
                    QStringLiteral("X,Y"), QStringLiteral("0,0")});
    line.AddOption({LoadOption,
                    QStringLiteral("Start from the parameters of a file; options that are given "
                                   "as well win."),
                    QStringLiteral("FILE")});
    line.AddOption({SaveOption,
                    QStringLiteral("Write the parameters into a file. IN and OUT may be left out "
                                   "then."),
                    QStringLiteral("FILE")});
    line.AddFormatOption();
    line.AddFile(QStringLiteral("IN"), QStringLiteral("The picture; - is standard input."));
    line.AddFile(QStringLiteral("OUT"), QStringLiteral("The result; - is standard output."));
}

FilterInput Input(const CommandLine& line, const Filter& filter, const LXImageRGBA32i& pixels) {
    FilterInput input;
    input.image = pixels;
    input.at = ParsePoint(line.Value(AtOption));
    if (filter.changesMask) {
        MakeMask(input.image);
    } else if (line.IsSet(SelectionOption)) {
        input.selection = LoadMask(line.Value(SelectionOption));
        input.selectionRect = LXImageRect(input.selection);
        if (!input.selectionRect.translated(input.at).intersects(LXImageRect(pixels)))
            throw UsageError{QStringLiteral("the selection lies outside the picture")};
    } else if (line.IsSet(AtOption)) {
        throw UsageError{QStringLiteral("--at needs a --selection")};
    }
    return input;
}

/// Loads, filters and saves, and tells the place of what has another than the picture.
void FilterPicture(const CommandLine& line, const Filter& filter, const FilterSettings& settings,
                   const ParameterValues& values) {
    const QString out = line.Files().at(1);
    const QByteArray format = OutputFormat(out, line.Value(QStringLiteral("format")));
    Picture picture = LoadPicture(line.Files().at(0));
    const FilterInput input = Input(line, filter, picture.pixels);
    QPoint offset;
    {
        FilterWatch watch(QString::fromLatin1(filter.name));
        LXImageAtOffset result = settings.Run(input, values, watch);
        picture.pixels = result.image;
        offset = result.offset;
    }
    if (filter.changesMask)
        MakeVisible(picture.pixels);
    StopIfInterrupted();
    SavePicture(picture, out, format);
    if (!offset.isNull() && out != QLatin1String("-"))
        Print(QStringLiteral("offset %1,%2\n").arg(offset.x()).arg(offset.y()));
}

int RunOne(const Command& command, const Filter& filter, const QStringList& arguments) {
    CommandLine line(command, filter.Title());
    AddOptions(line, filter);
    if (!line.Parse(arguments, 0, 2))
        return 0;
    const bool save = line.IsSet(SaveOption), load = line.IsSet(LoadOption);
    const int files = line.Files().size();
    if (files == 1 || (files == 0 && !save))
        throw UsageError{QStringLiteral("a file name is missing")};
    const ParameterValues values = filter.ReadValues(line);
    const std::unique_ptr<FilterSettings> settings = filter.makeSettings();
    if (load)
        LoadParams(line.Value(LoadOption), filter, *settings);
    settings->Set(values, load);
    if (files > 0)
        FilterPicture(line, filter, *settings, values);
    if (save)
        SaveParams(line.Value(SaveOption), *settings);
    return 0;
}

} // namespace

int RunFilter(const Command& command, const QStringList& arguments) {
    return RunNamed(command, arguments, Filters(), QStringLiteral("filter"),
                    QStringLiteral("Filters a picture. NAME is one of the filters that --list\n"
                                   "tells, each with options of its own:\n"
                                   "lximage filter NAME --help."),
                    RunOne);
}

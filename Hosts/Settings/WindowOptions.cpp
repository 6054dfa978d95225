#include "WindowOptions.h"

namespace {

constexpr int narrowest = 320;
constexpr int widest = 1400;
constexpr int smallestText = 100;
constexpr int largestText = 200;

/// Goes through the words once, from the first to the last.
class Parser {
public:
    explicit Parser(const std::vector<std::string>& words)
        : _words(words)
    {
    }

    Result<WindowOptions> parse()
    {
        while (_next < _words.size() && _error.isEmpty())
            take(QString::fromStdString(_words[_next++]));
        if (!_error.isEmpty())
            return Failure { _error.toStdString() };
        return _options;
    }

private:
    void take(const QString& word)
    {
        if (word == QLatin1String("--help"))
            _options.help = true;
        else if (word == QLatin1String("--no-provision"))
            _options.host.provision = false;
        else if (word == QLatin1String("--dark"))
            _options.dark = true;
        else if (word == QLatin1String("--mirrored"))
            _options.mirrored = true;
        else if (word == QLatin1String("--reduced-motion"))
            _options.reducedMotion = true;
        else if (word == QLatin1String("--until-first-frame"))
            _options.untilFirstFrame = true;
        else if (word.startsWith(QLatin1String("--")))
            takeWithValue(word.section(QLatin1Char('='), 0, 0), word);
        else if (!word.startsWith(QLatin1Char('-')))
            _error = QStringLiteral("there is nothing to do with \"%1\"").arg(word);
    }

    void takeWithValue(const QString& name, const QString& word)
    {
        if (name == QLatin1String("--phone"))
            _options.host.phone = value(word).toStdString();
        else if (name == QLatin1String("--root"))
            _options.host.root = value(word).toStdString();
        else if (name == QLatin1String("--pictures"))
            _options.pictures = value(word);
        else if (name == QLatin1String("--width"))
            _options.width = number(word, narrowest, widest);
        else if (name == QLatin1String("--text-size"))
            _options.textScale = number(word, smallestText, largestText) / double { smallestText };
        else
            _error = QStringLiteral("unknown option %1").arg(word);
    }

    QString value(const QString& word)
    {
        QString value = word.section(QLatin1Char('='), 1);
        if (!word.contains(QLatin1Char('=')) && _next < _words.size())
            value = QString::fromStdString(_words[_next++]);
        if (value.isEmpty())
            _error = QStringLiteral("%1 must be followed by a value").arg(word);
        return value;
    }

    int number(const QString& word, int least, int most)
    {
        bool isNumber = false;
        const int number = value(word).toInt(&isNumber);
        if (!isNumber || number < least || number > most)
            _error = QStringLiteral("%1 must be a number from %2 to %3").arg(word).arg(least).arg(most);
        return number;
    }

    const std::vector<std::string>& _words;
    std::size_t _next = 0;
    WindowOptions _options;
    QString _error;
};

} // namespace

Result<WindowOptions> WindowOptions::parse(const std::vector<std::string>& words)
{
    return Parser(words).parse();
}

QString WindowOptions::usage()
{
    return QStringLiteral(
        "usage: tandem-settings [--phone demo|linux|FILE] [--root DIR] [--no-provision]\n"
        "                       [--dark] [--mirrored] [--reduced-motion] [--text-size PERCENT]\n"
        "       tandem-settings --pictures DIR [--width POINTS]\n"
        "\n"
        "Opens the Settings window. With --pictures, writes a PNG of every page and every sheet, light\n"
        "and dark, into DIR instead, which needs no display.\n");
}

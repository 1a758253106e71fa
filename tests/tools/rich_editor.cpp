// SPDX-License-Identifier: MIT
// A rich text editor that tests paste into: Control-S writes the document to a file as HTML and
// its text beside it under ".txt".
#include <QApplication>
#include <QSaveFile>
#include <QShortcut>
#include <QTextEdit>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

void save(const QString& path, const QString& text) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(text.toUtf8()) < 0 || !file.commit()) {
        qFatal("cannot write %s", qUtf8Printable(path));
    }
}

}  // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    if (QApplication::arguments().size() != 3) {
        std::fputs("usage: rich_editor TITLE FILE\n", stderr);
        return 2;
    }
    const QString path = QApplication::arguments().at(2);
    QTextEdit editor;
    editor.setWindowTitle(QApplication::arguments().at(1));
    editor.resize(600, 300);
    const QShortcut shortcut(QKeySequence::Save, &editor);
    QObject::connect(&shortcut, &QShortcut::activated, &editor, [&editor, path] {
        save(path + u".txt"_s, editor.toPlainText());
        save(path, editor.toHtml());
    });
    editor.show();
    return QApplication::exec();
}

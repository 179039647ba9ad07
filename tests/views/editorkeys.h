#pragma once

#include <QtTest/QtTest>
#include <QtWidgets/QAbstractItemView>
#include <QtWidgets/QApplication>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QDoubleSpinBox>
#include <QtWidgets/QLineEdit>

// How a user works with editors in a view, by real events.
namespace editorkeys {

// A combo box takes letters that come fast for one word: the next is to begin anew.
inline void endWord()
{
    QTest::qWait(QApplication::keyboardInputInterval() + 50);
}

// Replaces what an open editor holds by a text; a blank toggles a check box.
inline void type(QWidget *editor, const QString &text)
{
    if (qobject_cast<QDoubleSpinBox *>(editor) || qobject_cast<QLineEdit *>(editor))
        QTest::keyClick(editor, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(editor, text);
}

// Types into the cell: F2, the text, Return. The editor must be of that class.
template<typename Editor>
void typeIntoCell(QAbstractItemView *view, const QModelIndex &cell, const QString &text)
{
    view->setCurrentIndex(cell);
    QTest::keyClick(view, Qt::Key_F2);
    auto *editor = view->viewport()->findChild<Editor *>();
    QVERIFY(editor);
    type(editor, text);
    QTest::keyClick(editor, Qt::Key_Return);
    QTRY_VERIFY(!view->viewport()->findChild<Editor *>());
    if (std::is_same<Editor, QComboBox>::value)
        endWord();
}

// For who wants to look at it: a picture into that directory, if it is set.
inline void keepPicture(const QPixmap &picture, const QString &name)
{
    const QString directory = qEnvironmentVariable("AVELDORAN_PICTURE_DIR");
    if (!directory.isEmpty())
        QVERIFY(picture.save(directory + QLatin1Char('/') + name));
}

} // namespace editorkeys

#include "apps/corvane-workbench/command_panel.h"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QScrollBar>
#include <QVBoxLayout>

namespace workbench {

namespace {
constexpr int kHistoryLimit = 500;
constexpr int kTranscriptLines = 20000;  // older lines scroll away
}  // namespace

CommandPanel::CommandPanel(QWidget* parent) : QWidget(parent) {
  transcript_ = new QPlainTextEdit(this);
  transcript_->setReadOnly(true);
  transcript_->setMaximumBlockCount(kTranscriptLines);
  transcript_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  transcript_->setObjectName("transcript");
  prompt_ = new QLabel("Command:", this);
  input_ = new QLineEdit(this);
  input_->setObjectName("commandInput");
  input_->installEventFilter(this);
  connect(input_, &QLineEdit::returnPressed, this, &CommandPanel::enter);
  auto* line = new QHBoxLayout;
  line->addWidget(prompt_);
  line->addWidget(input_, 1);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(2, 2, 2, 2);
  layout->addWidget(transcript_, 1);
  layout->addLayout(line);
}

void CommandPanel::appendTranscript(std::string_view utf8) {
  QTextCursor end(transcript_->document());
  end.movePosition(QTextCursor::End);
  end.insertText(QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size())));
  transcript_->verticalScrollBar()->setValue(transcript_->verticalScrollBar()->maximum());
}

void CommandPanel::setPrompt(const QString& prompt) {
  QString shown = prompt.trimmed();
  prompt_->setText(shown.isEmpty() ? QStringLiteral("Command:") : shown);
}

void CommandPanel::typeLine(const QString& line) {
  input_->setText(line);
  enter();
}

void CommandPanel::enter() {
  QString line = input_->text();
  input_->clear();
  if (!line.isEmpty() && (history_.isEmpty() || history_.last() != line)) {
    history_.append(line);
    if (history_.size() > kHistoryLimit) history_.removeFirst();
  }
  historyAt_ = static_cast<int>(history_.size());
  emit lineEntered(line);
}

bool CommandPanel::eventFilter(QObject* watched, QEvent* event) {
  if (watched == input_ && event->type() == QEvent::KeyPress) {
    auto* key = static_cast<QKeyEvent*>(event);
    if (key->key() == Qt::Key_Up && historyAt_ > 0) {
      input_->setText(history_[--historyAt_]);
      return true;
    }
    if (key->key() == Qt::Key_Down) {
      if (historyAt_ + 1 < history_.size()) input_->setText(history_[++historyAt_]);
      else {
        historyAt_ = static_cast<int>(history_.size());
        input_->clear();
      }
      return true;
    }
    if (key->key() == Qt::Key_Escape) {
      input_->clear();
      emit lineEntered(QStringLiteral("^C"));
      return true;
    }
  }
  return QWidget::eventFilter(watched, event);
}

}  // namespace workbench

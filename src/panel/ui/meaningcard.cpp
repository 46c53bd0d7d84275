// SPDX-License-Identifier: GPL-3.0-or-later
#include "panel/ui/meaningcard.h"

#include <QHeaderView>
#include <QScrollArea>
#include <QTableWidget>
#include <QVBoxLayout>
#include <algorithm>

#include "controls/ui/copyrows.h"
#include "controls/ui/labels.h"
#include "controls/ui/texts.h"
#include "panel/ui/cardtable.h"
#include "panel/ui/meaningtable.h"
#include "registers/meanings.h"
#include "registers/registermap.h"

namespace krx {
using namespace Qt::StringLiterals;
namespace {

enum FieldColumn { Bits, Field, Value, Meaning };

QString Text(const std::string& text) {
  return QString::fromStdString(text);
}

QString FooterText(const RegisterEntry& entry) {
  const QString byDefault =
      entry.Default ? u"%1h"_s.arg(*entry.Default, 2, 16, QChar(u'0')).toUpper().replace(u'H', u'h') : u"–"_s;
  const QString access = entry.Access == Access::Editable ? u"editable"_s : u"read-only"_s;
  const QString saved = entry.SaveLabel.empty() ? u"–"_s : QtText(entry.SaveLabel);
  return u"Default&nbsp;<b>%1</b> &nbsp; Access&nbsp;<b>%2</b> &nbsp; Saved&nbsp;as&nbsp;<b>%3</b>"_s.arg(
      byDefault, access, saved.toHtmlEscaped());
}

}  // namespace

MeaningCard::MeaningCard()
    : Card(u"What the register means"_s),
      purpose_(MakeLabel(u"lblPurpose"_s, 1, false)),
      fields_(new MeaningTable({u"Bits"_s, u"Field"_s, u"Value"_s, u"Meaning"_s})),
      codesTitle_(MakeLabel(u"lblCodes"_s, 0.92, false, true)),
      codes_(new MeaningTable({})),
      footer_(MakeLabel(u"lblRegisterFacts"_s, 0.92, false, true)) {
  purpose_->setWordWrap(true);
  fields_->setObjectName(u"tblFields"_s);
  fields_->setAccessibleName(u"Fields of the register"_s);
  codes_->setObjectName(u"tblCodes"_s);
  codes_->setAccessibleName(u"Codes of the field"_s);
  codes_->horizontalHeader()->hide();
  footer_->setWordWrap(true);
  footer_->setTextFormat(Qt::RichText);
  auto* const content = new QWidget;
  auto* const column = new QVBoxLayout(content);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(purpose_);
  column->addWidget(fields_);
  column->addWidget(codesTitle_);
  column->addWidget(codes_);
  column->addStretch();
  auto* const scroll = new QScrollArea;
  scroll->setFrameShape(QFrame::NoFrame);
  scroll->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Ignored);
  scroll->setWidgetResizable(true);
  scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  scroll->setFocusPolicy(Qt::NoFocus);
  scroll->setWidget(content);
  scroll->viewport()->setAutoFillBackground(false);
  content->setAutoFillBackground(false);
  Body().addWidget(scroll, 1);
  Body().addWidget(footer_);
  connect(fields_, &QTableWidget::currentCellChanged, this, [this](int row) {
    if (row < 0 || CodeRows(register_, static_cast<std::size_t>(row), byte_).empty()) return;
    codesOf_ = static_cast<std::size_t>(row);
    ShowCodes();
  });
}

void MeaningCard::Show(std::uint8_t reg, std::optional<std::uint8_t> byte) {
  if (reg == register_ && byte == byte_) return;
  const bool other = std::exchange(register_, reg) != reg;
  byte_ = byte;
  if (other) {
    codesOf_ = MainCodeField(reg);
    SetTextIfChanged(*purpose_, RegisterMeaning(reg));
    const RegisterEntry* const entry = LookupAddress(reg);
    footer_->setText(entry == nullptr ? QString() : FooterText(*entry));
  }
  ShowFields();
  ShowCodes();
}

void MeaningCard::SetNarrow(bool narrow) {
  narrow_ = narrow;
  fields_->setColumnHidden(Field, narrow);
  ShowCodes();
  fields_->FitRows();
}

void MeaningCard::ShowFields() {
  const std::vector<FieldRow> rows = FieldRows(register_, byte_);
  fields_->SetRows(static_cast<int>(rows.size()));
  for (int row = 0; row < fields_->rowCount(); ++row) {
    const FieldRow& field = rows.at(static_cast<std::size_t>(row));
    QString name = Text(field.FullName);
    for (const CodeRow& code : CodeRows(register_, static_cast<std::size_t>(row), byte_))
      name += u'\n' + Text(code.Code) + u"  "_s + Text(code.Meaning);
    fields_->SetCell(row, Bits, {.Text = Text(field.Bits), .ToolTip = name, .Muted = true});
    fields_->SetCell(row, Field, {.Text = Text(field.Name), .ToolTip = name});
    fields_->SetCell(row, Value, {.Text = Text(field.Value), .ToolTip = name, .Bold = true});
    const bool interpreted = field.Meaning != notInterpreted;
    fields_->SetCell(row, Meaning, {.Text = Text(field.Meaning), .ToolTip = name, .Muted = !interpreted});
  }
  fields_->FitRows();
}

void MeaningCard::ShowCodes() {
  const std::vector<CodeRow> codes = codesOf_ ? CodeRows(register_, *codesOf_, byte_) : std::vector<CodeRow>();
  const bool shown = !codes.empty() && !narrow_;
  codesTitle_->setVisible(shown);
  codes_->setVisible(shown);
  if (!shown) return;
  const std::string field = FieldRows(register_, byte_).at(*codesOf_).Name;
  SetTextIfChanged(*codesTitle_, Text(field) + u" codes"_s);
  // A long list stands in two halves beside each other.
  constexpr int most = 8;
  constexpr int columns = 3;
  const int total = static_cast<int>(codes.size());
  const int height = std::min(total, most);
  codes_->setColumnCount(columns * (total > most ? 2 : 1));
  codes_->SetRows(height);
  for (int code = 0; code < total; ++code) {
    const CodeRow& row = codes.at(static_cast<std::size_t>(code));
    const int column = code / height * columns;
    const Cell cell{.Text = Text(row.Code), .Bold = row.Present, .Muted = !row.Present, .Present = row.Present};
    codes_->SetCell(code % height, column, cell);
    codes_->SetCell(code % height, column + 1,
                    {.Text = Text(row.Meaning), .Bold = row.Present, .Present = row.Present});
    codes_->SetCell(code % height, column + 2,
                    {.ToolTip = row.Present ? u"present"_s : QString(), .Present = row.Present, .Tick = row.Present});
  }
  codes_->FitRows();
}

}  // namespace krx

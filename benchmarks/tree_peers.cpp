#include "benchmarks/tree_peers.h"

#include <QStandardItemModel>
#include <cstdio>
#include <gtk/gtk.h>
#include <random>
#include <string>
#include <wx/app.h>
#include <wx/dataview.h>
#include <wx/frame.h>
#include <wx/init.h>

namespace bench {

std::vector<Row> MakeRows(int count) {
  std::mt19937 random(7);
  std::vector<Row> rows;
  rows.reserve(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) {
    const long minutes = static_cast<long>(random() % (365 * 24 * 60));
    char time[40];
    std::snprintf(time, sizeof time, "2026-%02ld-%02ld %02ld:%02ld:00", minutes / 43800 % 12 + 1,
                  minutes / 1440 % 28 + 1, minutes / 60 % 24, minutes % 60);
    rows.push_back({"Table_" + std::to_string(random() % 10000000),
                    std::to_string(random() % 100000) + (i % 2 == 0 ? " KB" : ""), time,
                    minutes * 60});
  }
  return rows;
}

std::shared_ptr<void> MakeQtModel(const std::vector<Row>& rows) {
  auto model = std::make_shared<QStandardItemModel>(0, 3);
  for (const Row& row : rows) {
    model->appendRow({new QStandardItem(QString::fromStdString(row.name)),
                      new QStandardItem(QString::fromStdString(row.size)),
                      new QStandardItem(QString::fromStdString(row.time))});
  }
  return model;
}

std::shared_ptr<void> MakeGtkModel(const std::vector<Row>& rows) {
  GtkTreeStore* const store = gtk_tree_store_new(3, G_TYPE_STRING, G_TYPE_STRING, G_TYPE_STRING);
  GtkTreeIter at;
  for (const Row& row : rows) {
    // Not appended, for which the store goes through all its rows.
    gtk_tree_store_insert_with_values(store, &at, nullptr, 0, 0, row.name.c_str(), 1,
                                      row.size.c_str(), 2, row.time.c_str(), -1);
  }
  return {store, &g_object_unref};
}

bool StartWx() {
  wxApp::SetInstance(new wxApp);
  std::wstring name = L"trees_bench";
  wchar_t* arguments[] = {name.data(), nullptr};
  int count = 1;
  return wxEntryStart(count, arguments);
}

std::shared_ptr<void> MakeWxList(const std::vector<Row>& rows) {
  auto* const frame = new wxFrame(nullptr, wxID_ANY, "");
  auto* const list = new wxDataViewListCtrl(frame, wxID_ANY);
  for (const char* title : {"Name", "Size", "Changed"}) list->AppendTextColumn(title);
  for (const Row& row : rows) {
    wxVector<wxVariant> cells;
    for (const std::string& text : {row.name, row.size, row.time}) {
      cells.push_back(wxVariant(wxString::FromUTF8(text)));
    }
    list->AppendItem(cells);
  }
  return {frame, [](wxFrame* ended) { delete ended; }};
}

}  // namespace bench

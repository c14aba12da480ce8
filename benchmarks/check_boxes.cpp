// Trees with check boxes: a root toggled with a million nodes below it in linear time, whatever
// their shape, in the models alone and with a control that shows them; against a peer's model in
// which each node's check is set. `check_boxes_bench NODES` does it with fewer.

#include <QStandardItemModel>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "benchmarks/ratio.h"
#include "dqlib/framework/windows/win_app.h"
#include "dqlib/toolkit/tree_ctrl_ex.h"

namespace {

using Clock = std::chrono::steady_clock;

/// How many children a node has: none of them is deeper than needed.
enum Shape { kFlat, kThousands, kTens, kChain };
constexpr const char* kShapes[] = {"all below the root", "a thousand each", "ten each", "a chain"};

int ChildrenOf(Shape shape, int nodes) {
  if (shape == kChain) return 1;
  return shape == kFlat ? nodes : shape == kThousands ? 1'000 : 10;
}

/// A node as a host has it.
class Model : public dq::CDQCheckBoxTreeItemModel {
 public:
  int GetCheckState() const override { return state_; }
  void SetCheckState(int state) override { state_ = state; }

 private:
  int state_ = 0;
};

/// Fills a tree from the top down, in rows: `add(parent)` makes a node and returns it.
template <typename Node, typename Add>
void Fill(Node* root, int nodes, int children, Add add) {
  std::vector<Node*> all = {root};
  all.reserve(static_cast<std::size_t>(nodes) + 1);
  for (int at = 0; at < nodes; ++at)
    all.push_back(add(all[static_cast<std::size_t>(at / children)]));
}

Model* AddModel(Model* parent) {
  auto* const node = new Model;
  parent->AddChild(node);
  return node;
}

/// Nanoseconds per node; the best of three rounds, each of which does it twice.
template <typename Toggle>
double PerNode(int nodes, Toggle toggle) {
  double best = 1e300;
  for (int round = 0; round < 3; ++round) {
    const auto start = Clock::now();
    toggle();
    toggle();
    const std::chrono::duration<double, std::nano> taken = Clock::now() - start;
    best = std::min(best, taken.count() / 2 / nodes);
  }
  return best;
}

void Check(bool met, const char* what) {
  if (!met) ++bench::Misses();
  std::printf("%s: %s\n", what, met ? "met" : "MISSED");
}

void Linear(int most) {
  std::printf("root toggled, and tree built and ended, ns per node:\n");
  bool linear = true;
  for (const Shape shape : {kFlat, kThousands, kTens, kChain}) {
    double toggled[2];
    double built[2];
    for (int size = 0; size < 2; ++size) {
      const int nodes = size == 0 ? most / 10 : most;
      const auto start = Clock::now();
      {
        Model root;
        Fill<Model>(&root, nodes, ChildrenOf(shape, nodes), AddModel);
        toggled[size] = PerNode(nodes, [&] { root.ToggleCheckState(); });
      }
      const std::chrono::duration<double, std::nano> taken = Clock::now() - start;
      built[size] = taken.count() / nodes - 6 * toggled[size];
      std::printf("%8d nodes, %-18s %8.1f %8.1f\n", nodes, kShapes[shape], toggled[size],
                  built[size]);
    }
    // The smaller one fits into the processor's caches; quadratic time would be ten times as much.
    linear = linear && toggled[1] < 8 * toggled[0] && built[1] < 8 * built[0];
  }
  Check(linear, "linear time");
}

/// The same with items in a control, all of whose rows are shown.
void Shown(int nodes) {
  dq::CDQCheckBoxTreeController controller;
  Model root;
  std::unique_ptr<dq::CDQCheckBoxTreeItem> top(controller.CreateTreeItem(&root));
  const auto start = Clock::now();
  Fill<dq::CDQTreeItemBase>(
      top.get(), nodes, ChildrenOf(kThousands, nodes), [&](dq::CDQTreeItemBase* parent) {
        auto* const above = static_cast<Model*>(parent->GetItemModel());
        dq::CDQTreeItemBase* const item = controller.CreateTreeItem(AddModel(above));
        parent->AddChild(item);
        return item;
      });
  dq::CDQTreeCtrlEx tree;
  tree.Create(nullptr, {0, 0, 300, 400}, 1);
  tree.ExpandToLevel(tree.LoadTree(top.get(), dq::TVI_ROOT, 9), 9);
  const std::chrono::duration<double, std::nano> loaded = Clock::now() - start;
  const double toggled = PerNode(nodes, [&] { top->ToggleCheckBox(); });
  std::printf("%8d nodes in a control   built and loaded %8.1f   toggled %8.1f\n", nodes,
              loaded.count() / nodes, toggled);
}

/// All nodes of the peer, which has no states of parents: a program sets each.
void AgainstPeer(int nodes) {
  for (const Shape shape : {kFlat, kThousands, kTens}) {
    Model root;
    Fill<Model>(&root, nodes, ChildrenOf(shape, nodes), AddModel);
    QStandardItemModel peer;
    std::vector<QStandardItem*> items;
    Fill<QStandardItem>(peer.invisibleRootItem(), nodes, ChildrenOf(shape, nodes),
                        [&](QStandardItem* parent) {
                          auto* const item = new QStandardItem;
                          item->setCheckable(true);
                          parent->appendRow(item);
                          items.push_back(item);
                          return item;
                        });
    const std::string name = "root toggled, " + std::to_string(nodes) + ", " + kShapes[shape];
    bench::Ratio(name, "QStandardItem::setCheckState", 1.0)
        .Run([&] { root.ToggleCheckState(); },
             [&] {
               const bool checked = items.front()->checkState() == Qt::Checked;
               for (QStandardItem* item : items) {
                 item->setCheckState(checked ? Qt::Unchecked : Qt::Checked);
               }
             },
             3);
  }
}

}  // namespace

int main(int argc, char** argv) {
  const dq::CWinApp app("bench");
  const int nodes = argc > 1 ? std::max(1'000, std::atoi(argv[1])) : 1'000'000;
  Linear(nodes);
  Shown(nodes);
  AgainstPeer(nodes);
  return bench::Finish();
}

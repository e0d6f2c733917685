#pragma once
#include <algorithm>
#include <cstddef>
#include <numeric>
#include <vector>

/// Two items that belong together, one of each list; NoItem where the other list has none.
struct ItemPair
{
    static constexpr size_t NoItem = static_cast<size_t>(-1);
    size_t left;
    size_t right;
};

/// Pairs items of the same key, the first with the first and so on. In the order of the left list, and then those that
/// only the right one has in its order.
template <typename Item, typename KeyOf>
std::vector<ItemPair> PairByKey(const std::vector<Item>& left, const std::vector<Item>& right, KeyOf keyOf)
{
    const auto sorted = [&](const std::vector<Item>& items)
    {
        std::vector<size_t> order(items.size());
        std::iota(order.begin(), order.end(), size_t{0});
        std::stable_sort(order.begin(), order.end(),
                         [&](size_t a, size_t b) { return keyOf(items[a]) < keyOf(items[b]); });
        return order;
    };
    const std::vector<size_t> leftOrder = sorted(left);
    const std::vector<size_t> rightOrder = sorted(right);
    std::vector<ItemPair> pairs;
    auto l = leftOrder.begin();
    auto r = rightOrder.begin();
    while (l != leftOrder.end() || r != rightOrder.end())
    {
        const bool takesLeft = r == rightOrder.end() || (l != leftOrder.end() && !(keyOf(right[*r]) < keyOf(left[*l])));
        const bool takesRight =
            l == leftOrder.end() || (r != rightOrder.end() && !(keyOf(left[*l]) < keyOf(right[*r])));
        pairs.push_back({takesLeft ? *l++ : ItemPair::NoItem, takesRight ? *r++ : ItemPair::NoItem});
    }
    std::sort(pairs.begin(), pairs.end(),
              [](const ItemPair& a, const ItemPair& b)
              { return a.left != b.left ? a.left < b.left : a.right < b.right; });
    return pairs;
}

/// Whether the pairs, in the order of the left list, come in that of the right list too.
inline bool HasSameOrder(const std::vector<ItemPair>& pairs)
{
    size_t last = 0;
    for (const ItemPair& pair : pairs)
    {
        if (pair.left == ItemPair::NoItem || pair.right == ItemPair::NoItem)
            continue;
        if (pair.right < last)
            return false;
        last = pair.right;
    }
    return true;
}

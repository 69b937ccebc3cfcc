#pragma once

#include <compare>
#include <cstddef>
#include <iterator>
#include <type_traits>

namespace Meseta47 {

/// Random access to a list that is not one block, through its operator[]. Valid as long as the list keeps its length.
template <class Lista, class Elemento>
class CIteradorIndice {
 public:
  using iterator_category = std::random_access_iterator_tag;
  using value_type = std::remove_const_t<Elemento>;
  using difference_type = std::ptrdiff_t;
  using pointer = Elemento*;
  using reference = Elemento&;

  CIteradorIndice() = default;
  CIteradorIndice(Lista& suLista, std::size_t suIndice)
      : lista(&suLista), indice(static_cast<difference_type>(suIndice)) {}

  reference operator*() const { return (*lista)[static_cast<unsigned>(indice)]; }
  pointer operator->() const { return &**this; }
  reference operator[](difference_type n) const { return *(*this + n); }

  CIteradorIndice& operator+=(difference_type n) {
    indice += n;
    return *this;
  }
  CIteradorIndice& operator-=(difference_type n) { return *this += -n; }
  CIteradorIndice& operator++() { return *this += 1; }
  CIteradorIndice& operator--() { return *this += -1; }
  CIteradorIndice operator++(int) {
    CIteradorIndice antes(*this);
    ++*this;
    return antes;
  }
  CIteradorIndice operator--(int) {
    CIteradorIndice antes(*this);
    --*this;
    return antes;
  }

  friend CIteradorIndice operator+(CIteradorIndice i, difference_type n) { return i += n; }
  friend CIteradorIndice operator+(difference_type n, CIteradorIndice i) { return i += n; }
  friend CIteradorIndice operator-(CIteradorIndice i, difference_type n) { return i -= n; }
  friend difference_type operator-(CIteradorIndice const& a, CIteradorIndice const& b) { return a.indice - b.indice; }
  friend bool operator==(CIteradorIndice const& a, CIteradorIndice const& b) { return a.indice == b.indice; }
  friend auto operator<=>(CIteradorIndice const& a, CIteradorIndice const& b) { return a.indice <=> b.indice; }

 private:
  Lista* lista = nullptr;
  difference_type indice = 0;
};

}  // namespace Meseta47

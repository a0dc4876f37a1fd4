#pragma once
// The generated entries the benchmarks' registers are made of: entry i of a register
// is an opening asset or an addition as the benchmark chooses, over twenty groups.

#include <string>

#include "store/database.h"
#include "store/register_store.h"

namespace brenlow::bench {

inline store::OpeningRow opening_entry(int i) {
    store::OpeningRow o;
    o.IdFAGM = 1 + i % 20;
    o.Part = "MACHINE NUMBER " + std::to_string(i);
    o.CostWdv = 100000 + i;
    o.OpDepr = 25000.5;
    o.ResValue = 5000;
    o.LifeYrs = 15;
    o.RateFACL = 18.1;
    o.WdvIT = 61234.25;
    o.RateIT = 15;
    o.PutDate = "01/04/2014";
    o.OthOpts = "||||Y|Y|Y|Y|Y|Y|N|N";
    return o;
}

// One addition in forty carries a shift.
inline store::AdditionRow addition_entry(int i) {
    store::AdditionRow a;
    a.IdFAGM = 1 + i % 20;
    a.Part = "ADDITION NUMBER " + std::to_string(i);
    a.PutDate = "15/06/2015";
    a.AccDate = "10/06/2015";
    a.PurAmt = 50000 + i;
    a.ExciseCr = 500;
    a.ResValue = 2000;
    a.LifeYrs = 15;
    a.RateFACL = 18.1;
    a.RateIT = 15;
    a.AddlDepRT = 20;
    a.OthOpts = "|OLD|Y|Y|Y|Y|Y|Y";
    if (i % 40 == 3) a.ShiftDet = "01/07/2015,30/09/2015,2";
    return a;
}

// Twenty asset groups of the year, "GROUP 1" to "GROUP 20", all in the same blocks.
inline void add_groups(store::Database& db, int year) {
    for (int g = 1; g <= 20; ++g)
        db.execute("INSERT INTO NewFAGM Values (" + std::to_string(g) + "," + std::to_string(year) +
                   ",'GROUP " + std::to_string(g) + "','3-15',15,20,0,15,'4.1',15,6.33,18.1)");
}

// A register of `entries` for `code`, opening assets and additions taking turns.
inline void fill_register(store::Database& db, const std::string& code, int year, int entries) {
    store::RegisterStore rs(db, code, year);
    store::Transaction tx(db);
    for (int i = 0; i < entries; ++i) {
        if (i % 2 == 0)
            rs.insert_opening(opening_entry(i));
        else
            rs.insert_addition(addition_entry(i));
    }
    tx.commit();
}

}  // namespace brenlow::bench

Scalar first_coefficient() const { return derived()(0); }

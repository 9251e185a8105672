"""Tables of any form as walk folders, by a map that says which column is which."""
